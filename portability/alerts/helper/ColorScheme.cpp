#include "portability/alerts/helper/ColorScheme.h"

#include <gtk/gtk.h>

#include <string_view>

namespace alerthelper {
namespace {

constexpr char kPortal[] = "org.freedesktop.portal.Desktop";
constexpr char kPath[] = "/org/freedesktop/portal/desktop";
constexpr char kInterface[] = "org.freedesktop.portal.Settings";
constexpr char kNamespace[] = "org.freedesktop.appearance";
constexpr char kKey[] = "color-scheme";
constexpr guint32 kPreferDark = 1;
constexpr int kLongestWaitMilliseconds = 250;

// If the desktop has no preference, the setting of the theme or of the user's settings file stays.
void apply(GVariant* value) {
    static gboolean before = [] {
        gboolean dark = FALSE;
        g_object_get(gtk_settings_get_default(), "gtk-application-prefer-dark-theme", &dark, nullptr);
        return dark;
    }();
    if (!g_variant_is_of_type(value, G_VARIANT_TYPE_UINT32)) return;
    const gboolean dark = g_variant_get_uint32(value) == kPreferDark ? TRUE : before;
    g_object_set(gtk_settings_get_default(), "gtk-application-prefer-dark-theme", dark, nullptr);
}

// The older of the portal's two calls wraps the value in two variants; its signal wraps it in one.
void applyUnwrapped(GVariant* value) {
    g_autoptr(GVariant) unwrapped = g_variant_ref(value);
    while (g_variant_is_of_type(unwrapped, G_VARIANT_TYPE_VARIANT)) {
        GVariant* const inner = g_variant_get_variant(unwrapped);
        g_variant_unref(unwrapped);
        unwrapped = inner;
    }
    apply(unwrapped);
}

void settingChanged(GDBusConnection*, const gchar*, const gchar*, const gchar*, const gchar*,
                    GVariant* parameters, gpointer) {
    if (!g_variant_is_of_type(parameters, G_VARIANT_TYPE("(ssv)"))) return;
    const gchar* space = nullptr;
    const gchar* key = nullptr;
    g_autoptr(GVariant) value = nullptr;
    g_variant_get(parameters, "(&s&sv)", &space, &key, &value);
    if (std::string_view(space) == kNamespace && std::string_view(key) == kKey) applyUnwrapped(value);
}

}  // namespace

void followColorScheme() {
    // Never released, because the signals arrive through this connection.
    GDBusConnection* const bus = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
    if (bus == nullptr) return;
    g_dbus_connection_set_exit_on_close(bus, FALSE);
    g_dbus_connection_signal_subscribe(bus, kPortal, kInterface, "SettingChanged", kPath, kNamespace,
                                       G_DBUS_SIGNAL_FLAGS_NONE, settingChanged, nullptr, nullptr);
    g_autoptr(GVariant) reply = g_dbus_connection_call_sync(
        bus, kPortal, kPath, kInterface, "Read", g_variant_new("(ss)", kNamespace, kKey),
        G_VARIANT_TYPE("(v)"), G_DBUS_CALL_FLAGS_NO_AUTO_START, kLongestWaitMilliseconds, nullptr, nullptr);
    if (reply == nullptr) return;
    g_autoptr(GVariant) value = g_variant_get_child_value(reply, 0);
    applyUnwrapped(value);
}

}  // namespace alerthelper
