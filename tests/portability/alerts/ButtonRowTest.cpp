// The buttons of an alert, in the order that the desktop uses.
#include "tests/portability/alerts/AlertPartsTest.h"

namespace alerthelper::test {
namespace {

class ButtonRowTest : public AlertPartsTest {
  protected:
    std::string getCaption(size_t button) {
        return gtk_button_get_label(GTK_BUTTON(window().buttons().button(button)));
    }

    bool isLeftOf(size_t one, size_t other) {
        const std::vector<Place> places = shown_->buttonPlaces();
        return places[one].x < places[other].x;
    }
};

TEST_F(ButtonRowTest, Captions_AreShownAsGiven) {
    show(simpleRequest({"_Retry & <i>again</i>", "100 %_n"}));
    EXPECT_EQ(getCaption(0), "_Retry & <i>again</i>");
    EXPECT_EQ(getCaption(1), "100 %_n");
}

TEST_F(ButtonRowTest, ShippedCaptions_AreShownWhole) {
    for (const char* language : {"English", "German", "Francais"}) {
        const AlertRequest request = requestIn(language);
        show(request);
        for (size_t button = 0; button < request.buttons.size(); ++button) {
            EXPECT_EQ(getCaption(button), request.buttons[button]);
            GtkWidget* const label = gtk_button_get_child(GTK_BUTTON(window().buttons().button(button)));
            EXPECT_FALSE(pango_layout_is_ellipsized(gtk_label_get_layout(GTK_LABEL(label))))
                << request.buttons[button];
        }
    }
}

TEST_F(ButtonRowTest, ShippedCaptions_AreShownWholeOnTheSmallestScreenAtTwiceTheSize) {
    setenv("GDK_SCALE", "2", 1);
    screen_.emplace("640x480");
    for (const char* language : {"English", "German", "Francais"}) {
        show(requestIn(language));
        for (size_t button = 0; button < 2; ++button) {
            GtkWidget* const label = gtk_button_get_child(GTK_BUTTON(window().buttons().button(button)));
            EXPECT_FALSE(pango_layout_is_ellipsized(gtk_label_get_layout(GTK_LABEL(label))))
                << getCaption(button);
        }
    }
}

TEST_F(ButtonRowTest, LongCaptions_AreCutSoThatTheWindowStaysOnTheScreen) {
    screen_.emplace("640x480");
    const std::string caption(portability::kLongestAlertCaption, 'W');
    show(simpleRequest({caption, caption, caption}));
    EXPECT_LE(gtk_widget_get_width(GTK_WIDGET(window().window())), 640);
    EXPECT_TRUE(shown_->buttonPlaces()[0].x < 640);
}

TEST_F(ButtonRowTest, FirstButton_IsWhereTheDesktopHasTheDefaultOne) {
    show(simpleRequest({"Yes", "No", "Cancel"}));
    EXPECT_TRUE(isLeftOf(1, 0));
    EXPECT_TRUE(isLeftOf(2, 1));
    g_object_set(gtk_settings_get_default(), "gtk-alternative-button-order", TRUE, nullptr);
    show(simpleRequest({"Yes", "No", "Cancel"}));
    EXPECT_TRUE(isLeftOf(0, 1));
    EXPECT_TRUE(isLeftOf(1, 2));
}

TEST_F(ButtonRowTest, RightToLeftDesktop_HasTheDefaultButtonAtTheLeft) {
    show(simpleRequest({"Yes", "No"}));
    gtk_widget_set_default_direction(GTK_TEXT_DIR_RTL);
    show(simpleRequest({"Yes", "No"}));
    EXPECT_TRUE(isLeftOf(0, 1));
}

TEST_F(ButtonRowTest, HelpButton_IsThereOnlyIfAskedFor) {
    AlertRequest request = simpleRequest({"OK"});
    show(request);
    EXPECT_EQ(window().buttons().helpButton(), nullptr);
    request.help = true;
    show(request);
    ASSERT_NE(window().buttons().helpButton(), nullptr);
    EXPECT_TRUE(gtk_widget_get_mapped(window().buttons().helpButton()));
    EXPECT_LT(shown_->helpPlace().x, shown_->buttonPlaces()[0].x);
}

}  // namespace
}  // namespace alerthelper::test
