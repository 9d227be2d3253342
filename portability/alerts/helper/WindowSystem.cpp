#include "portability/alerts/helper/WindowSystem.h"

#include <gtk/gtk.h>
#include <sys/stat.h>

#include <clocale>
#include <string>

#include "portability/alerts/helper/ColorScheme.h"

namespace alerthelper {
namespace {

constexpr char kProgramName[] = "dovrel-alert";

// The first GTK 4 version with GDK_DISABLE. Earlier versions use another variable.
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

// Otherwise the libraries would start their own bus, which is never stopped, or print a warning if
// they cannot.
void useNoBus() {
    g_setenv("DBUS_SESSION_BUS_ADDRESS", "disabled:", TRUE);
    if (!isSet("AT_SPI_BUS_ADDRESS")) g_setenv("GTK_A11Y", "none", FALSE);
}

// An alert is a static image. Loading the drivers of a graphics processor would cost more time and memory
// than they save.
void useNoGraphicsProcessor() {
    g_setenv("GSK_RENDERER", "cairo", FALSE);
    if (gtk_get_minor_version() < kMinorVersionWithDisable) {
        g_setenv("GDK_DEBUG", "gl-disable", FALSE);
    } else {
        g_setenv("GDK_DISABLE", "gl,vulkan", FALSE);
    }
}

// Writes the libraries' messages only if G_MESSAGES_DEBUG is set. They are meant for developers, for example
// the warning that a bus has no service for screen readers.
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
    // Set here, because GTK would print a warning for a locale that is not installed.
    setlocale(LC_ALL, "");
    gtk_disable_setlocale();
    if (gtk_init_check() == FALSE) return false;
    if (hasBus) followColorScheme();
    return true;
}

}  // namespace alerthelper
