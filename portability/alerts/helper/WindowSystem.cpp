#include "portability/alerts/helper/WindowSystem.h"

#include <gtk/gtk.h>
#include <sys/stat.h>

#include <clocale>
#include <string>

#include "portability/alerts/helper/ColorScheme.h"

namespace alerthelper {
namespace {

constexpr char kProgramName[] = "dovrel-alert";

// Of GTK 4; before it the variable had another name.
constexpr guint kMinorVersionWithDisable = 16;

bool isSet(const char* variable) {
    const char* const value = g_getenv(variable);
    return value != nullptr && *value != '\0';
}

bool hasSessionBus() {
    if (isSet("DBUS_SESSION_BUS_ADDRESS")) return true;
    struct stat status {};
    const std::string path = std::string(g_get_user_runtime_dir()) + "/bus";
    return stat(path.c_str(), &status) == 0 && S_ISSOCK(status.st_mode);
}

// The libraries would otherwise start a bus of their own, which stays, and complain if they cannot.
void useNoBus() {
    g_setenv("DBUS_SESSION_BUS_ADDRESS", "disabled:", TRUE);
    if (!isSet("AT_SPI_BUS_ADDRESS")) g_setenv("GTK_A11Y", "none", FALSE);
}

// An alert is a still picture: the drivers of a graphics processor would cost more time and memory than they
// save.
void useNoGraphicsProcessor() {
    g_setenv("GSK_RENDERER", "cairo", FALSE);
    if (gtk_get_minor_version() < kMinorVersionWithDisable) {
        g_setenv("GDK_DEBUG", "gl-disable", FALSE);
    } else {
        g_setenv("GDK_DISABLE", "gl,vulkan", FALSE);
    }
}

// The libraries' warnings, such as that of a bus without a service for screen readers, are for developers.
GLogWriterOutput writeIfAskedFor(GLogLevelFlags level, const GLogField* fields, gsize count, gpointer data) {
    return isSet("G_MESSAGES_DEBUG") ? g_log_writer_default(level, fields, count, data)
                                     : G_LOG_WRITER_HANDLED;
}

}  // namespace

bool connectToWindowSystem() {
    g_log_set_writer_func(writeIfAskedFor, nullptr, nullptr);
    g_set_prgname(kProgramName);
    useNoGraphicsProcessor();
    const bool hasBus = hasSessionBus();
    if (!hasBus) useNoBus();
    // GTK would complain about a locale that the system does not have.
    setlocale(LC_ALL, "");
    gtk_disable_setlocale();
    if (gtk_init_check() == FALSE) return false;
    if (hasBus) followColorScheme();
    return true;
}

}  // namespace alerthelper
