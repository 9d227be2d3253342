// Dark or light colours, as the desktop's settings portal specifies.
#include <gio/gio.h>
#include <gtk/gtk.h>

#include <optional>
#include <thread>

#include "portability/alerts/helper/WindowSystem.h"
#include "tests/portability/alerts/HelperScreen.h"
#include "tests/portability/alerts/HelperTest.h"
#include "tests/support/WaitUntil.h"

namespace alerthelper::test {
namespace {

constexpr char kInterface[] = R"(
    <node><interface name="org.freedesktop.portal.Settings">
        <method name="Read"><arg type="s" direction="in"/><arg type="s" direction="in"/>
                            <arg type="v" direction="out"/></method>
        <signal name="SettingChanged"><arg type="s"/><arg type="s"/><arg type="v"/></signal>
    </interface></node>)";

/// A settings portal on a session bus that belongs to the test. It replies in its own thread.
class Portal {
  public:
    enum class Reply { value, error, none };

    Portal(Reply reply, guint32 scheme)
        : reply_(reply), scheme_(scheme), bus_(g_test_dbus_new(G_TEST_DBUS_NONE)) {
        g_test_dbus_up(bus_);
        thread_ = std::thread([this] { run(); });
        while (!isThere_)
            std::this_thread::yield();
    }

    ~Portal() {
        g_main_loop_quit(loop_);
        thread_.join();
        // The object is not released: its destructor would wait for the program's other users of the bus.
        g_test_dbus_stop(bus_);
    }

    /// Announces a new value of a setting to the desktop's programs.
    void tell(const char* setting, guint32 scheme) {
        g_dbus_connection_emit_signal(
            connection_, nullptr, "/org/freedesktop/portal/desktop", "org.freedesktop.portal.Settings",
            "SettingChanged",
            g_variant_new("(ssv)", "org.freedesktop.appearance", setting, g_variant_new_uint32(scheme)),
            nullptr);
        g_dbus_connection_flush_sync(connection_, nullptr, nullptr);
    }

  private:
    void run() {
        GMainContext* const context = g_main_context_new();
        g_main_context_push_thread_default(context);
        loop_ = g_main_loop_new(context, FALSE);
        connection_ = g_dbus_connection_new_for_address_sync(
            g_test_dbus_get_bus_address(bus_),
            static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                              G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
            nullptr, nullptr, nullptr);
        GDBusNodeInfo* const node = g_dbus_node_info_new_for_xml(kInterface, nullptr);
        static const GDBusInterfaceVTable table = {answer, nullptr, nullptr, {}};
        g_dbus_connection_register_object(connection_, "/org/freedesktop/portal/desktop", node->interfaces[0],
                                          &table, this, nullptr, nullptr);
        const guint name = g_bus_own_name_on_connection(
            connection_, "org.freedesktop.portal.Desktop", G_BUS_NAME_OWNER_FLAGS_NONE,
            [](GDBusConnection*, const gchar*, gpointer self) {
                static_cast<Portal*>(self)->isThere_ = true;
            },
            nullptr, this, nullptr);
        g_main_loop_run(loop_);
        g_bus_unown_name(name);
        g_dbus_node_info_unref(node);
        g_object_unref(connection_);
        g_main_loop_unref(loop_);
        g_main_context_pop_thread_default(context);
        g_main_context_unref(context);
    }

    static void answer(GDBusConnection*, const gchar*, const gchar*, const gchar*, const gchar*, GVariant*,
                       GDBusMethodInvocation* call, gpointer data) {
        const Portal& self = *static_cast<Portal*>(data);
        if (self.reply_ == Reply::error) {
            g_dbus_method_invocation_return_dbus_error(call, "org.freedesktop.portal.Error.NotFound", "none");
        } else if (self.reply_ == Reply::value) {
            // The reply to this call has two variants around the value.
            GVariant* const value = g_variant_new_variant(g_variant_new_uint32(self.scheme_));
            g_dbus_method_invocation_return_value(call, g_variant_new("(v)", value));
        } else {
            g_object_unref(call);
        }
    }

    const Reply reply_;
    const guint32 scheme_;
    GTestDBus* const bus_;
    GDBusConnection* connection_ = nullptr;
    GMainLoop* loop_ = nullptr;
    std::atomic<bool> isThere_{false};
    std::thread thread_;
};

class ColorSchemeTest : public HelperTest {
  protected:
    // There are no screen readers on this bus.
    ColorSchemeTest() { setenv("GTK_A11Y", "none", 1); }

    static bool isDark() {
        gboolean dark = FALSE;
        g_object_get(gtk_settings_get_default(), "gtk-application-prefer-dark-theme", &dark, nullptr);
        return dark != FALSE;
    }

    static bool becomes(bool dark) {
        return dovrel::test::waitUntil([dark] {
            while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
            }
            return isDark() == dark;
        });
    }

    /// Connects as the helper does. Start the bus first: starting it removes the name of
    /// the screen from the environment.
    void connect() {
        screen_.emplace("640x480", HelperScreen::Manager::none);
        ASSERT_TRUE(connectToWindowSystem());
    }

    std::optional<HelperScreen> screen_;
};

TEST_F(ColorSchemeTest, DarkDesktop_MakesWindowsDarkFromTheBeginning) {
    const Portal portal(Portal::Reply::value, 1);
    connect();
    EXPECT_TRUE(isDark());
}

TEST_F(ColorSchemeTest, LightDesktop_LeavesWindowsLight) {
    const Portal portal(Portal::Reply::value, 2);
    connect();
    EXPECT_FALSE(isDark());
}

TEST_F(ColorSchemeTest, DesktopWithoutPreference_LeavesTheUsersOwnSetting) {
    folder_.write("config/gtk-4.0/settings.ini", "[Settings]\ngtk-application-prefer-dark-theme=1\n");
    setenv("XDG_CONFIG_HOME", folder_.path("config").c_str(), 1);
    const Portal portal(Portal::Reply::value, 0);
    connect();
    EXPECT_TRUE(isDark());
}

TEST_F(ColorSchemeTest, ChangedDesktop_ChangesWindows) {
    Portal portal(Portal::Reply::value, 0);
    connect();
    EXPECT_FALSE(isDark());
    portal.tell("color-scheme", 1);
    EXPECT_TRUE(becomes(true));
    portal.tell("contrast", 0);
    portal.tell("color-scheme", 2);
    EXPECT_TRUE(becomes(false));
}

TEST_F(ColorSchemeTest, PortalThatKnowsNothing_LeavesWindowsLight) {
    const Portal portal(Portal::Reply::error, 0);
    connect();
    EXPECT_FALSE(isDark());
}

TEST_F(ColorSchemeTest, PortalThatDoesNotReply_IsNotWaitedForLong) {
    const Portal portal(Portal::Reply::none, 0);
    connect();
    EXPECT_FALSE(isDark());
}

}  // namespace
}  // namespace alerthelper::test
