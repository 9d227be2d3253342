#include "portability/alerts/helper/ButtonRow.h"

#include <utility>

#include "portability/alerts/helper/Captions.h"
#include "portability/alerts/helper/Layout.h"

namespace alerthelper {
namespace {

constexpr int kSmallestButtonWidth = 86;
constexpr int kLongestCaption = 30;  // in characters of average width

bool isFirstButtonAtLeft() {
    gboolean alternative = FALSE;
    g_object_get(gtk_settings_get_default(), "gtk-alternative-button-order", &alternative, nullptr);
    return alternative != FALSE;
}

GtkWidget* makeButton(const std::string& caption) {
    GtkWidget* const button = gtk_button_new_with_label(caption.c_str());
    auto* const label = GTK_LABEL(gtk_button_get_child(GTK_BUTTON(button)));
    gtk_label_set_ellipsize(label, PANGO_ELLIPSIZE_END);
    gtk_label_set_max_width_chars(label, kLongestCaption);
    gtk_widget_add_css_class(button, "alert-button");
    gtk_widget_set_size_request(button, kSmallestButtonWidth, -1);
    return button;
}

}  // namespace

ButtonRow::ButtonRow(const std::vector<std::string>& captions, std::function<void(size_t)> pressed,
                     std::function<void()> help)
    : pressed_(std::move(pressed)),
      help_(std::move(help)),
      whole_(gtk_box_new(GTK_ORIENTATION_HORIZONTAL, kSpacing)) {
    g_object_ref_sink(whole_);
    setMargins(whole_, kMargin, kMargin, kMargin);
    if (help_) addHelpButton();
    addButtons(captions);
}

ButtonRow::~ButtonRow() {
    buttons_.push_back(helpButton_);
    for (GtkWidget* button : buttons_) {
        if (button != nullptr) g_signal_handlers_disconnect_by_data(button, this);
    }
    g_object_unref(whole_);
}

void ButtonRow::addHelpButton() {
    // A question mark needs no icon and is the same in all languages.
    helpButton_ = gtk_button_new_with_label("?");
    gtk_widget_add_css_class(helpButton_, "circular");
    gtk_widget_set_valign(helpButton_, GTK_ALIGN_CENTER);
    gtk_widget_set_tooltip_text(helpButton_, helpCaption());
    gtk_accessible_update_property(GTK_ACCESSIBLE(helpButton_), GTK_ACCESSIBLE_PROPERTY_LABEL, helpCaption(),
                                   -1);
    g_signal_connect(helpButton_, "clicked", G_CALLBACK(handleClick), this);
    gtk_box_append(GTK_BOX(whole_), helpButton_);
}

void ButtonRow::addButtons(const std::vector<std::string>& captions) {
    GtkWidget* const group = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, kSpacing);
    gtk_box_set_homogeneous(GTK_BOX(group), TRUE);
    gtk_widget_set_hexpand(group, TRUE);
    gtk_widget_set_halign(group, GTK_ALIGN_END);
    const auto add = isFirstButtonAtLeft() ? gtk_box_append : gtk_box_prepend;
    for (size_t index = 0; index < captions.size(); ++index) {
        buttons_.push_back(makeButton(captionOrStandard(captions, index)));
        g_signal_connect(buttons_.back(), "clicked", G_CALLBACK(handleClick), this);
        add(GTK_BOX(group), buttons_.back());
    }
    gtk_widget_add_css_class(buttons_.front(), "suggested-action");
    gtk_box_append(GTK_BOX(whole_), group);
}

void ButtonRow::handleClick(GtkWidget* source, ButtonRow* self) {
    if (source == self->helpButton_) self->help_();
    for (size_t index = 0; index < self->buttons_.size(); ++index) {
        if (source == self->buttons_[index]) self->pressed_(index);
    }
}

}  // namespace alerthelper
