#include "portability/alerts/helper/AlertText.h"

#include <algorithm>

#include "portability/alerts/helper/Layout.h"
#include "portability/alerts/helper/TextMeasure.h"

namespace alerthelper {
namespace {

constexpr int kSignSize = 48;
constexpr int kLargestHeight = 600;
constexpr int kSmallestBody = 60;
constexpr int kFrameMargin = 8;
constexpr int kMostHeadingLines = 3;

// A text view needs a little more space than its text, for example for the cursor.
constexpr int kSlack = 4;

// In characters of average width.
constexpr int kLongestLine = 54;
constexpr int kShortestLine = 28;

// The height in pixels of the rest of the window, its borders and the desktop's panels.
constexpr int kOtherHeight = 150;

// The share of the screen's width that the window may use.
constexpr double kWindowShare = 0.9;

GtkWidget* makeSign() {
    auto* const sign = static_cast<GtkWidget*>(
        g_object_new(GTK_TYPE_IMAGE, "accessible-role", GTK_ACCESSIBLE_ROLE_PRESENTATION, nullptr));
    gtk_image_set_from_icon_name(GTK_IMAGE(sign), "dialog-warning-symbolic");
    gtk_image_set_pixel_size(GTK_IMAGE(sign), kSignSize);
    gtk_widget_set_valign(sign, GTK_ALIGN_START);
    gtk_widget_add_css_class(sign, "alert-sign");
    return sign;
}

GtkWidget* makeHeading(const std::string& title) {
    auto* const label = static_cast<GtkWidget*>(
        g_object_new(GTK_TYPE_LABEL, "accessible-role", GTK_ACCESSIBLE_ROLE_HEADING, nullptr));
    gtk_widget_add_css_class(label, "alert-heading");
    gtk_label_set_text(GTK_LABEL(label), title.c_str());
    gtk_label_set_xalign(GTK_LABEL(label), 0);
    gtk_label_set_wrap(GTK_LABEL(label), TRUE);
    gtk_label_set_wrap_mode(GTK_LABEL(label), PANGO_WRAP_WORD_CHAR);
    gtk_label_set_lines(GTK_LABEL(label), kMostHeadingLines);
    gtk_label_set_ellipsize(GTK_LABEL(label), PANGO_ELLIPSIZE_END);
    gtk_label_set_selectable(GTK_LABEL(label), TRUE);
    return label;
}

// A text view, because it can display long texts. For screen readers it has the role of a label.
GtkWidget* makeBody(const std::string& text) {
    auto* const view = static_cast<GtkWidget*>(
        g_object_new(GTK_TYPE_TEXT_VIEW, "accessible-role", GTK_ACCESSIBLE_ROLE_LABEL, nullptr));
    gtk_accessible_update_property(GTK_ACCESSIBLE(view), GTK_ACCESSIBLE_PROPERTY_LABEL, text.c_str(), -1);
    gtk_widget_add_css_class(view, "alert-body");
    auto* const textView = GTK_TEXT_VIEW(view);
    gtk_text_buffer_set_text(gtk_text_view_get_buffer(textView), text.data(), static_cast<int>(text.size()));
    gtk_text_view_set_editable(textView, FALSE);
    gtk_text_view_set_cursor_visible(textView, FALSE);
    gtk_text_view_set_accepts_tab(textView, FALSE);
    gtk_text_view_set_wrap_mode(textView, GTK_WRAP_WORD_CHAR);
    return view;
}

}  // namespace

AlertText::AlertText(const std::string& title, const std::string& body)
    : title_(title),
      text_(body),
      whole_(gtk_box_new(GTK_ORIENTATION_HORIZONTAL, kMargin)),
      sign_(makeSign()),
      heading_(makeHeading(title)),
      body_(makeBody(body)),
      scroller_(gtk_scrolled_window_new()) {
    gtk_widget_set_visible(heading_, title.empty() ? FALSE : TRUE);
    gtk_widget_set_visible(scroller_, body.empty() ? FALSE : TRUE);
    putTogether();
}

void AlertText::putTogether() {
    gtk_scrolled_window_set_child(GTK_SCROLLED_WINDOW(scroller_), body_);
    // No scroll bar, unless makeBodyScroll adds it. GTK must not decide this. It would add a bar before the
    // text view knows the height of its text. It would then keep the bar, because the text needs more height
    // beside it.
    gtk_scrolled_window_set_policy(GTK_SCROLLED_WINDOW(scroller_), GTK_POLICY_NEVER, GTK_POLICY_EXTERNAL);
    gtk_widget_set_vexpand(scroller_, TRUE);

    GtkWidget* const texts = gtk_box_new(GTK_ORIENTATION_VERTICAL, kSpacing);
    gtk_widget_set_hexpand(texts, TRUE);
    gtk_box_append(GTK_BOX(texts), heading_);
    gtk_box_append(GTK_BOX(texts), scroller_);

    setMargins(whole_, kMargin, kMargin, kSpacing);
    gtk_box_append(GTK_BOX(whole_), sign_);
    gtk_box_append(GTK_BOX(whole_), texts);
}

void AlertText::fitToScreen() {
    const int character = averageCharacterWidth(body_);
    const int widest = static_cast<int>(smallestMonitor().width * kWindowShare) - kSignSize - 3 * kMargin;
    const int longestLine = std::clamp(widest, 1, kLongestLine * character);
    const Size heading = textSize(heading_, title_, longestLine);
    Size body = textSize(body_, text_, longestLine);
    body = {body.width + kSlack, body.height + kSlack};

    const int width = std::max({heading.width, body.width, std::min(kShortestLine * character, longestLine)});
    const int height = std::min(smallestMonitor().height - kOtherHeight, kLargestHeight);
    const int bodyHeight = std::max(height - heading.height - kSpacing, kSmallestBody);
    const bool scrolls = body.height > bodyHeight;
    if (scrolls) makeBodyScroll();
    gtk_widget_set_size_request(heading_, width, -1);
    gtk_widget_set_size_request(scroller_, scrolls ? longestLine : width, std::min(body.height, bodyHeight));
}

void AlertText::makeBodyScroll() {
    auto* const scroller = GTK_SCROLLED_WINDOW(scroller_);
    gtk_scrolled_window_set_policy(scroller, GTK_POLICY_NEVER, GTK_POLICY_ALWAYS);
    // Always visible: a scroll bar that appears only under the pointer does not show that there is more text.
    gtk_scrolled_window_set_overlay_scrolling(scroller, FALSE);
    gtk_scrolled_window_set_has_frame(scroller, TRUE);
    gtk_widget_remove_css_class(body_, "alert-body");
    auto* const view = GTK_TEXT_VIEW(body_);
    gtk_text_view_set_left_margin(view, kFrameMargin);
    gtk_text_view_set_right_margin(view, kFrameMargin);
    gtk_text_view_set_top_margin(view, kFrameMargin);
    gtk_text_view_set_bottom_margin(view, kFrameMargin);
}

void AlertText::scrollPage(GtkScrollType direction) const {
    gboolean done = FALSE;
    g_signal_emit_by_name(scroller_, "scroll-child", direction, FALSE, &done);
}

}  // namespace alerthelper
