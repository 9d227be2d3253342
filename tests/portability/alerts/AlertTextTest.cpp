// Heading and body of an alert: displayed unchanged, completely or with a scroll bar.
#include "portability/alerts/helper/TextMeasure.h"
#include "tests/portability/alerts/AlertPartsTest.h"

namespace alerthelper::test {
namespace {

class AlertTextTest : public AlertPartsTest {
  protected:
    std::string bodyText() {
        GtkTextBuffer* const buffer = gtk_text_view_get_buffer(GTK_TEXT_VIEW(text().body()));
        g_autofree gchar* content = nullptr;
        g_object_get(buffer, "text", &content, nullptr);
        return content;
    }

    GtkAdjustment* scrolling() {
        return gtk_scrolled_window_get_vadjustment(GTK_SCROLLED_WINDOW(text().scroller()));
    }

    /// Returns where the last line of the body ends. The text view measures its lines one by one after it has
    /// been shown, so the value changes at first.
    int bodyHeight() {
        auto* const view = GTK_TEXT_VIEW(text().body());
        GtkTextIter end;
        gtk_text_buffer_get_end_iter(gtk_text_view_get_buffer(view), &end);
        int y = 0;
        int height = 0;
        gtk_text_view_get_line_yrange(view, &end, &y, &height);
        return y + height;
    }

    bool isMeasured() {
        GtkWidget* const view = text().body();
        return bodyHeight() == textSize(view, bodyText(), gtk_widget_get_width(view)).height;
    }

    void expectBodyFits() {
        EXPECT_TRUE(shown_->workUntil([this] { return isMeasured(); }));
        EXPECT_LE(bodyHeight(), gtk_adjustment_get_page_size(scrolling()));
        EXPECT_FALSE(isFramed());
    }

    bool isFramed() {
        return gtk_scrolled_window_get_has_frame(GTK_SCROLLED_WINDOW(text().scroller())) != FALSE;
    }

    static std::string makeLines(size_t count) {
        std::string lines;
        for (size_t line = 0; line < count; ++line)
            lines += "Line number " + std::to_string(line) + " of a body.\n";
        return lines;
    }
};

TEST_F(AlertTextTest, Texts_AreShownAsGiven) {
    AlertRequest request = simpleRequest({"OK"});
    request.title = "<b>Title</b> &amp; _more\nand a second line";
    request.body = "Größe “a\\b” <b>&amp;</b> _x\n\n• 日本\n";
    show(request);
    EXPECT_STREQ(gtk_label_get_text(GTK_LABEL(text().heading())), request.title.c_str());
    EXPECT_STREQ(gtk_window_get_title(window().window()), request.title.c_str());
    EXPECT_EQ(bodyText(), request.body);
}

TEST_F(AlertTextTest, EmptyTexts_TakeNoPlace) {
    show({"", "", {"OK"}, false, getpid()});
    EXPECT_FALSE(gtk_widget_get_visible(text().heading()));
    EXPECT_FALSE(gtk_widget_get_visible(text().scroller()));
    EXPECT_TRUE(gtk_widget_get_mapped(text().sign()));
}

TEST_F(AlertTextTest, Sign_IsAPictureThatThereIs) {
    show(requestIn("English"));
    const char* const name = gtk_image_get_icon_name(GTK_IMAGE(text().sign()));
    GtkIconTheme* const theme = gtk_icon_theme_get_for_display(gdk_display_get_default());
    EXPECT_STREQ(name, "dialog-warning-symbolic");
    EXPECT_TRUE(gtk_icon_theme_has_icon(theme, name));
}

TEST_F(AlertTextTest, ShippedTexts_AreShownWithoutScrollingOnTheSmallestScreen) {
    screen_.emplace("640x480");
    for (const char* language : {"English", "German", "Francais"}) {
        show(requestIn(language));
        SCOPED_TRACE(language);
        expectBodyFits();
    }
}

TEST_F(AlertTextTest, ShortBody_MakesASmallWindow) {
    show(requestIn("English"));
    const int width = gtk_widget_get_width(GTK_WIDGET(window().window()));
    show(simpleRequest({"OK"}));
    EXPECT_LT(gtk_widget_get_width(GTK_WIDGET(window().window())), width);
}

TEST_F(AlertTextTest, LongBody_ScrollsInAFrameAndTheBarIsSeen) {
    AlertRequest request = requestIn("English");
    request.body = makeLines(200);
    show(request);
    EXPECT_TRUE(
        shown_->workUntil([this] { return bodyHeight() > gtk_adjustment_get_page_size(scrolling()); }));
    EXPECT_TRUE(isFramed());
    GtkWidget* const bar = gtk_scrolled_window_get_vscrollbar(GTK_SCROLLED_WINDOW(text().scroller()));
    EXPECT_TRUE(gtk_widget_get_mapped(bar));
    EXPECT_FALSE(gtk_scrolled_window_get_overlay_scrolling(GTK_SCROLLED_WINDOW(text().scroller())));
}

TEST_F(AlertTextTest, PageKeys_ScrollFromTheButtons) {
    AlertRequest request = requestIn("English");
    request.body = makeLines(200);
    show(request);
    ASSERT_TRUE(shown_->workUntil([&] { return gtk_window_is_active(window().window()) != FALSE; }));
    EXPECT_EQ(gtk_adjustment_get_value(scrolling()), 0);
    HelperScreen::pressKey("Next");
    EXPECT_TRUE(shown_->workUntil([&] { return gtk_adjustment_get_value(scrolling()) > 100; }));
    HelperScreen::pressKey("Prior");
    EXPECT_TRUE(shown_->workUntil([&] { return gtk_adjustment_get_value(scrolling()) < 1; }));
    EXPECT_TRUE(shown_->pressed.empty());
}

TEST_F(AlertTextTest, LongestTexts_AreShownSoonEnough) {
    AlertRequest request = requestIn("English");
    request.title = std::string(portability::kLongestAlertTitle, 'W');
    for (const std::string& word :
         {std::string("word "), std::string("word\n"), std::string("\n"), std::string("\u00e4")}) {
        request.body.clear();
        while (request.body.size() + word.size() <= portability::kLongestAlertBody)
            request.body += word;
        // Throws if the window does not open within a minute.
        show(request);
        EXPECT_TRUE(isFramed());
    }
}

// Each font needs its own process, because GTK reads the desktop's font when it starts.
class AlertFontTest : public AlertTextTest, public testing::WithParamInterface<const char*> {};

TEST_P(AlertFontTest, ShippedTexts_AreShownWithoutScrolling) {
    folder_.write("config/gtk-4.0/settings.ini",
                  std::string("[Settings]\ngtk-font-name=") + GetParam() + "\n");
    setenv("XDG_CONFIG_HOME", folder_.path("config").c_str(), 1);
    screen_.emplace("1280x1024");
    for (const char* language : {"English", "German", "Francais"}) {
        show(requestIn(language));
        SCOPED_TRACE(language);
        expectBodyFits();
    }
}

INSTANTIATE_TEST_SUITE_P(Fonts, AlertFontTest,
                         testing::Values("Sans 7", "Sans 10", "Serif 11", "Monospace 13", "Sans 18"),
                         [](const auto& font) {
                             std::string name = font.param;
                             name.erase(name.find(' '), 1);
                             return name;
                         });

}  // namespace
}  // namespace alerthelper::test
