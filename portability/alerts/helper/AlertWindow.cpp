#include "portability/alerts/helper/AlertWindow.h"

#include <utility>

#include "portability/alerts/helper/OnTop.h"

namespace alerthelper {
namespace {

using portability::AlertRequest;

constexpr char kStyle[] =
    // A symbolic icon has the colour of text unless a style sets another one.
    ".alert-sign { color: @warning_color; }"
    ".alert-heading { font-size: 1.4em; font-weight: bold; }"
    // A body without a frame has the background of the window.
    ".alert-body, .alert-body > text { background-color: transparent; color: @theme_fg_color; }"
    // With the default padding, two long captions would not fit on the smallest screens.
    ".alert-button { padding-left: 10px; padding-right: 10px; }";

AlertWindow& toWindow(gpointer data) {
    return *static_cast<AlertWindow*>(data);
}

GtkWindow* makeWindow() {
    return static_cast<GtkWindow*>(
        g_object_new(GTK_TYPE_WINDOW, "accessible-role", GTK_ACCESSIBLE_ROLE_ALERT_DIALOG, nullptr));
}

void addStyle() {
    g_autoptr(GtkCssProvider) style = gtk_css_provider_new();
    gtk_css_provider_load_from_data(style, kStyle, -1);
    gtk_style_context_add_provider_for_display(gdk_display_get_default(), GTK_STYLE_PROVIDER(style),
                                               GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
}

void addKey(GtkEventController* keys, guint key, GtkShortcutFunc function, gpointer data) {
    gtk_shortcut_controller_add_shortcut(GTK_SHORTCUT_CONTROLLER(keys),
                                         gtk_shortcut_new(gtk_keyval_trigger_new(key, GdkModifierType{}),
                                                          gtk_callback_action_new(function, data, nullptr)));
}

}  // namespace

AlertWindow::AlertWindow(const AlertRequest& request, Handlers handlers)
    : handlers_(std::move(handlers)),
      lastButton_(request.buttons.size() - 1),
      window_(makeWindow()),
      text_(request.title, request.body),
      buttons_(request.buttons, handlers_.pressed, request.help ? handlers_.help : nullptr) {
    addStyle();
    GtkWidget* const content = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
    gtk_box_append(GTK_BOX(content), text_.whole());
    gtk_box_append(GTK_BOX(content), buttons_.whole());
    gtk_window_set_child(window_, content);
    text_.fitToScreen();
    gtk_window_set_resizable(window_, FALSE);
    gtk_window_set_modal(window_, TRUE);
    describe(request);

    gtk_window_set_default_widget(window_, buttons_.button(0));
    gtk_window_set_focus(window_, buttons_.button(0));
    addKeys();
    const auto closed = +[](GtkWindow*, gpointer self) -> gboolean {
        toWindow(self).pressCancel();
        return TRUE;
    };
    g_signal_connect(window_, "close-request", G_CALLBACK(closed), this);
}

AlertWindow::~AlertWindow() {
    if (firstFrame_ != 0)
        g_signal_handler_disconnect(gtk_widget_get_frame_clock(GTK_WIDGET(window_)), firstFrame_);
    gtk_window_destroy(window_);
}

void AlertWindow::describe(const AlertRequest& request) {
    gtk_window_set_title(window_, request.title.c_str());
    gtk_window_set_icon_name(window_, "dialog-warning");
    // Otherwise screen readers would read the title twice: once as the window's title and once as
    // the heading.
    gtk_accessible_reset_property(GTK_ACCESSIBLE(window_), GTK_ACCESSIBLE_PROPERTY_LABEL);
    gtk_accessible_update_property(GTK_ACCESSIBLE(window_), GTK_ACCESSIBLE_PROPERTY_DESCRIPTION,
                                   request.body.c_str(), -1);
    gtk_accessible_update_relation(GTK_ACCESSIBLE(window_), GTK_ACCESSIBLE_RELATION_LABELLED_BY,
                                   text_.heading(), nullptr, GTK_ACCESSIBLE_RELATION_DESCRIBED_BY,
                                   text_.body(), nullptr, -1);
}

void AlertWindow::addKeys() {
    GtkEventController* const keys = gtk_shortcut_controller_new();
    const auto cancel = [](GtkWidget*, GVariant*, gpointer self) -> gboolean {
        toWindow(self).pressCancel();
        return TRUE;
    };
    const auto pageUp = [](GtkWidget*, GVariant*, gpointer self) -> gboolean {
        toWindow(self).text_.scrollPage(GTK_SCROLL_PAGE_UP);
        return TRUE;
    };
    const auto pageDown = [](GtkWidget*, GVariant*, gpointer self) -> gboolean {
        toWindow(self).text_.scrollPage(GTK_SCROLL_PAGE_DOWN);
        return TRUE;
    };
    addKey(keys, GDK_KEY_Escape, cancel, this);
    addKey(keys, GDK_KEY_Page_Up, pageUp, this);
    addKey(keys, GDK_KEY_Page_Down, pageDown, this);
    gtk_widget_add_controller(GTK_WIDGET(window_), keys);
}

void AlertWindow::present() {
    gtk_widget_realize(GTK_WIDGET(window_));
    watchFirstFrame();
    prepareOnTop(window_);
    gtk_window_present(window_);
    gtk_window_set_focus_visible(window_, TRUE);
}

void AlertWindow::watchFirstFrame() {
    const auto painted = +[](GdkFrameClock* clock, gpointer data) {
        AlertWindow& self = toWindow(data);
        if (gdk_surface_get_mapped(gtk_native_get_surface(GTK_NATIVE(self.window_))) == FALSE) return;
        g_signal_handler_disconnect(clock, std::exchange(self.firstFrame_, 0));
        putOnTop(self.window_);
        self.handlers_.shown();
    };
    GdkFrameClock* const clock = gtk_widget_get_frame_clock(GTK_WIDGET(window_));
    firstFrame_ = g_signal_connect(clock, "after-paint", G_CALLBACK(painted), this);
}

}  // namespace alerthelper
