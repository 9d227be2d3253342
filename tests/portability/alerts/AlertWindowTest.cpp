// The window as the keyboard and screen readers use it.
#include "portability/alerts/helper/Captions.h"
#include "tests/portability/alerts/AlertPartsTest.h"

namespace alerthelper::test {
namespace {

class AlertWindowTest : public AlertPartsTest {};

TEST_F(AlertWindowTest, FirstButton_IsTheDefaultAndHasTheKeyboard) {
    show(requestIn("English"));
    GtkWidget* const first = window().buttons().button(0);
    EXPECT_EQ(gtk_window_get_default_widget(window().window()), first);
    EXPECT_EQ(gtk_window_get_focus(window().window()), first);
    EXPECT_TRUE(gtk_window_get_focus_visible(window().window()));
    EXPECT_TRUE(gtk_widget_has_css_class(first, "suggested-action"));
    EXPECT_FALSE(gtk_widget_has_css_class(window().buttons().button(1), "suggested-action"));
}

TEST_F(AlertWindowTest, Parts_HaveTheRolesOfAnAlertAndAName) {
    show(requestIn("English"));
    gtk_test_accessible_assert_role(window().window(), GTK_ACCESSIBLE_ROLE_ALERT_DIALOG);
    gtk_test_accessible_assert_role(text().heading(), GTK_ACCESSIBLE_ROLE_HEADING);
    gtk_test_accessible_assert_role(text().body(), GTK_ACCESSIBLE_ROLE_LABEL);
    gtk_test_accessible_assert_role(text().sign(), GTK_ACCESSIBLE_ROLE_PRESENTATION);
    for (size_t button : {0u, 1u})
        gtk_test_accessible_assert_role(window().buttons().button(button), GTK_ACCESSIBLE_ROLE_BUTTON);
    GtkWidget* const help = window().buttons().helpButton();
    gtk_test_accessible_assert_role(help, GTK_ACCESSIBLE_ROLE_BUTTON);
    gtk_test_accessible_assert_property(help, GTK_ACCESSIBLE_PROPERTY_LABEL, helpCaption());
    EXPECT_STREQ(gtk_widget_get_tooltip_text(help), helpCaption());
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
    // Only the heading is the accessible name. With a label as well, the text would be read aloud twice.
    EXPECT_FALSE(gtk_test_accessible_has_property(dialog, GTK_ACCESSIBLE_PROPERTY_LABEL));
}

}  // namespace
}  // namespace alerthelper::test
