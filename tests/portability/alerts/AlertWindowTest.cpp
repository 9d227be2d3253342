// The parts of the alert's window, looked at inside the test's own process.
#include <cstdlib>
#include <optional>

#include "alerts/helper/TextMeasure.h"
#include "tests/portability/alerts/HelperScreen.h"
#include "tests/portability/alerts/HelperTest.h"
#include "tests/portability/alerts/ShownWindow.h"

namespace alerthelper::test {
namespace {

using portability::AlertRequest;

class AlertWindowTest : public HelperTest {
  protected:
    // Accessible names and relations that can be read without a screen reader.
    AlertWindowTest() { setenv("GTK_A11Y", "test", 1); }

    ShownWindow& show(const AlertRequest& request) {
        if (!screen_) screen_.emplace();
        shown_.emplace(request);
        return *shown_;
    }

    AlertWindow& window() { return shown_->window(); }
    const AlertText& text() { return window().text(); }

    std::string bodyText() {
        GtkTextBuffer* const buffer = gtk_text_view_get_buffer(GTK_TEXT_VIEW(text().body()));
        g_autofree gchar* content = nullptr;
        g_object_get(buffer, "text", &content, nullptr);
        return content;
    }

    std::string captionOf(size_t button) {
        return gtk_button_get_label(GTK_BUTTON(window().buttons().button(button)));
    }

    bool isLeftOf(size_t one, size_t other) {
        const std::vector<Place> places = shown_->buttonPlaces();
        return places[one].x < places[other].x;
    }

    GtkAdjustment* scrolling() {
        return gtk_scrolled_window_get_vadjustment(GTK_SCROLLED_WINDOW(text().scroller()));
    }

    /// Where the last line of the body ends. The text view measures its lines one after the other, a moment
    /// after it has been shown.
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

    static std::string linesOf(size_t count) {
        std::string lines;
        for (size_t line = 0; line < count; ++line)
            lines += "Line number " + std::to_string(line) + " of a body.\n";
        return lines;
    }

    std::optional<HelperScreen> screen_;
    std::optional<ShownWindow> shown_;
};

// Texts.

TEST_F(AlertWindowTest, Texts_AreShownAsGiven) {
    AlertRequest request = simpleRequest({"_Retry & <i>again</i>", "100 %_n"});
    request.title = "<b>Title</b> &amp; _more\nand a second line";
    request.body = "Größe “a\\b” <b>&amp;</b> _x\n\n• 日本\n";
    show(request);
    EXPECT_STREQ(gtk_label_get_text(GTK_LABEL(text().heading())), request.title.c_str());
    EXPECT_EQ(bodyText(), request.body);
    EXPECT_STREQ(gtk_window_get_title(window().window()), request.title.c_str());
    EXPECT_EQ(captionOf(0), request.buttons[0]);
    EXPECT_EQ(captionOf(1), request.buttons[1]);
}

TEST_F(AlertWindowTest, ShippedCaptions_AreShownWhole) {
    for (const char* language : {"English", "German", "Francais"}) {
        const AlertRequest request = requestIn(language);
        show(request);
        for (size_t button = 0; button < request.buttons.size(); ++button) {
            EXPECT_EQ(captionOf(button), request.buttons[button]);
            GtkWidget* const label = gtk_button_get_child(GTK_BUTTON(window().buttons().button(button)));
            EXPECT_FALSE(pango_layout_is_ellipsized(gtk_label_get_layout(GTK_LABEL(label))))
                << request.buttons[button];
        }
    }
}

TEST_F(AlertWindowTest, ShippedCaptions_AreShownWholeOnTheSmallestScreenAtTwiceTheSize) {
    setenv("GDK_SCALE", "2", 1);
    screen_.emplace("640x480");
    for (const char* language : {"English", "German", "Francais"}) {
        show(requestIn(language));
        for (size_t button = 0; button < 2; ++button) {
            GtkWidget* const label = gtk_button_get_child(GTK_BUTTON(window().buttons().button(button)));
            EXPECT_FALSE(pango_layout_is_ellipsized(gtk_label_get_layout(GTK_LABEL(label))))
                << captionOf(button);
        }
    }
}

TEST_F(AlertWindowTest, LongCaptions_AreCutSoThatTheWindowStaysOnTheScreen) {
    screen_.emplace("640x480");
    const std::string caption(portability::kLongestAlertCaption, 'W');
    show(simpleRequest({caption, caption, caption}));
    EXPECT_LE(gtk_widget_get_width(GTK_WIDGET(window().window())), 640);
    EXPECT_TRUE(shown_->buttonPlaces()[0].x < 640);
}

TEST_F(AlertWindowTest, EmptyTexts_TakeNoPlace) {
    show({"", "", {"OK"}, false, getpid()});
    EXPECT_FALSE(gtk_widget_get_visible(text().heading()));
    EXPECT_FALSE(gtk_widget_get_visible(text().scroller()));
    EXPECT_TRUE(gtk_widget_get_mapped(text().sign()));
}

TEST_F(AlertWindowTest, EmptyCaptions_AreReplacedByTheDesktopsWords) {
    show(simpleRequest({"", "", ""}));
    EXPECT_EQ(captionOf(0), "OK");
    EXPECT_EQ(captionOf(1), "OK");
    EXPECT_EQ(captionOf(2), "Cancel");
    show(simpleRequest({""}));
    EXPECT_EQ(captionOf(0), "OK");
}

TEST_F(AlertWindowTest, Sign_IsAPictureThatThereIs) {
    show(requestIn("English"));
    const char* const name = gtk_image_get_icon_name(GTK_IMAGE(text().sign()));
    GtkIconTheme* const theme = gtk_icon_theme_get_for_display(gdk_display_get_default());
    EXPECT_STREQ(name, "dialog-warning-symbolic");
    EXPECT_TRUE(gtk_icon_theme_has_icon(theme, name));
}

// Size of the body.

// In a process for each font, as the desktop's font is there from the beginning.
class AlertFontTest : public AlertWindowTest, public testing::WithParamInterface<const char*> {};

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

TEST_F(AlertWindowTest, ShippedTexts_AreShownWithoutScrollingOnTheSmallestScreen) {
    screen_.emplace("640x480");
    for (const char* language : {"English", "German", "Francais"}) {
        show(requestIn(language));
        SCOPED_TRACE(language);
        expectBodyFits();
    }
}

TEST_F(AlertWindowTest, ShortBody_MakesASmallWindow) {
    show(requestIn("English"));
    const int width = gtk_widget_get_width(GTK_WIDGET(window().window()));
    show(simpleRequest({"OK"}));
    EXPECT_LT(gtk_widget_get_width(GTK_WIDGET(window().window())), width);
}

TEST_F(AlertWindowTest, LongBody_ScrollsInAFrameAndTheBarIsSeen) {
    AlertRequest request = requestIn("English");
    request.body = linesOf(200);
    show(request);
    EXPECT_TRUE(
        shown_->workUntil([this] { return bodyHeight() > gtk_adjustment_get_page_size(scrolling()); }));
    EXPECT_TRUE(isFramed());
    GtkWidget* const bar = gtk_scrolled_window_get_vscrollbar(GTK_SCROLLED_WINDOW(text().scroller()));
    EXPECT_TRUE(gtk_widget_get_mapped(bar));
    EXPECT_FALSE(gtk_scrolled_window_get_overlay_scrolling(GTK_SCROLLED_WINDOW(text().scroller())));
}

TEST_F(AlertWindowTest, PageKeys_ScrollFromTheButtons) {
    AlertRequest request = requestIn("English");
    request.body = linesOf(200);
    show(request);
    ASSERT_TRUE(shown_->workUntil([&] { return gtk_window_is_active(window().window()) != FALSE; }));
    EXPECT_EQ(gtk_adjustment_get_value(scrolling()), 0);
    HelperScreen::pressKey("Next");
    EXPECT_TRUE(shown_->workUntil([&] { return gtk_adjustment_get_value(scrolling()) > 100; }));
    HelperScreen::pressKey("Prior");
    EXPECT_TRUE(shown_->workUntil([&] { return gtk_adjustment_get_value(scrolling()) < 1; }));
    EXPECT_TRUE(shown_->pressed.empty());
}

TEST_F(AlertWindowTest, LongestTexts_AreShownSoonEnough) {
    AlertRequest request = requestIn("English");
    request.title = std::string(portability::kLongestAlertTitle, 'W');
    for (const std::string& word :
         {std::string("word "), std::string("word\n"), std::string("\n"), std::string("\u00e4")}) {
        request.body.clear();
        while (request.body.size() + word.size() <= portability::kLongestAlertBody)
            request.body += word;
        // Throws if the window does not come within half a minute.
        show(request);
        EXPECT_TRUE(isFramed());
    }
}

// Buttons.

TEST_F(AlertWindowTest, FirstButton_IsTheDefaultAndHasTheKeyboard) {
    show(requestIn("English"));
    GtkWidget* const first = window().buttons().button(0);
    EXPECT_EQ(gtk_window_get_default_widget(window().window()), first);
    EXPECT_EQ(gtk_window_get_focus(window().window()), first);
    EXPECT_TRUE(gtk_window_get_focus_visible(window().window()));
    EXPECT_TRUE(gtk_widget_has_css_class(first, "suggested-action"));
    EXPECT_FALSE(gtk_widget_has_css_class(window().buttons().button(1), "suggested-action"));
}

TEST_F(AlertWindowTest, FirstButton_IsWhereTheDesktopHasTheDefaultOne) {
    show(simpleRequest({"Yes", "No", "Cancel"}));
    EXPECT_TRUE(isLeftOf(1, 0));
    EXPECT_TRUE(isLeftOf(2, 1));
    g_object_set(gtk_settings_get_default(), "gtk-alternative-button-order", TRUE, nullptr);
    show(simpleRequest({"Yes", "No", "Cancel"}));
    EXPECT_TRUE(isLeftOf(0, 1));
    EXPECT_TRUE(isLeftOf(1, 2));
}

TEST_F(AlertWindowTest, RightToLeftDesktop_HasTheDefaultButtonAtTheLeft) {
    show(simpleRequest({"Yes", "No"}));
    gtk_widget_set_default_direction(GTK_TEXT_DIR_RTL);
    show(simpleRequest({"Yes", "No"}));
    EXPECT_TRUE(isLeftOf(0, 1));
}

TEST_F(AlertWindowTest, HelpButton_IsThereOnlyIfAskedFor) {
    AlertRequest request = simpleRequest({"OK"});
    show(request);
    EXPECT_EQ(window().buttons().helpButton(), nullptr);
    request.help = true;
    show(request);
    ASSERT_NE(window().buttons().helpButton(), nullptr);
    EXPECT_TRUE(gtk_widget_get_mapped(window().buttons().helpButton()));
    EXPECT_LT(shown_->helpPlace().x, shown_->buttonPlaces()[0].x);
}

// Screen readers.

TEST_F(AlertWindowTest, Roles_AreThoseOfAnAlert) {
    show(requestIn("English"));
    gtk_test_accessible_assert_role(window().window(), GTK_ACCESSIBLE_ROLE_ALERT_DIALOG);
    gtk_test_accessible_assert_role(text().heading(), GTK_ACCESSIBLE_ROLE_HEADING);
    gtk_test_accessible_assert_role(text().body(), GTK_ACCESSIBLE_ROLE_LABEL);
    gtk_test_accessible_assert_role(text().sign(), GTK_ACCESSIBLE_ROLE_PRESENTATION);
    for (size_t button : {0u, 1u})
        gtk_test_accessible_assert_role(window().buttons().button(button), GTK_ACCESSIBLE_ROLE_BUTTON);
    gtk_test_accessible_assert_role(window().buttons().helpButton(), GTK_ACCESSIBLE_ROLE_BUTTON);
}

TEST_F(AlertWindowTest, HeadingAndBody_NameAndDescribeTheWindow) {
    const AlertRequest request = requestIn("German");
    show(request);
    auto* const dialog = GTK_ACCESSIBLE(window().window());
    gtk_test_accessible_assert_relation(dialog, GTK_ACCESSIBLE_RELATION_LABELLED_BY, text().heading(),
                                        nullptr);
    gtk_test_accessible_assert_relation(dialog, GTK_ACCESSIBLE_RELATION_DESCRIBED_BY, text().body(), nullptr);
    gtk_test_accessible_assert_property(dialog, GTK_ACCESSIBLE_PROPERTY_DESCRIPTION, request.body.c_str());
    gtk_test_accessible_assert_property(text().body(), GTK_ACCESSIBLE_PROPERTY_LABEL, request.body.c_str());
    // The heading alone is the name: it would be read twice otherwise.
    EXPECT_FALSE(gtk_test_accessible_has_property(dialog, GTK_ACCESSIBLE_PROPERTY_LABEL));
}

TEST_F(AlertWindowTest, HelpButton_HasANameInTheUsersLanguage) {
    struct Case {
        const char* language;
        const char* name;
    };
    for (const Case& user :
         {Case{"de_AT:en", "Hilfe"}, {"fr", "Aide"}, {"en_GB", "Help"}, {"pl", "Help"}, {"", "Help"}}) {
        setenv("LANGUAGE", user.language, 1);
        // The libraries look at the languages anew if the locale is another one.
        setenv("LANG", (std::string(user.name) + ".UTF-8").c_str(), 1);
        show(requestIn("English"));
        GtkWidget* const help = window().buttons().helpButton();
        gtk_test_accessible_assert_property(help, GTK_ACCESSIBLE_PROPERTY_LABEL, user.name);
        EXPECT_STREQ(gtk_widget_get_tooltip_text(help), user.name) << user.language;
    }
}

}  // namespace
}  // namespace alerthelper::test
