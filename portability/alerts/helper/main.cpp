// dovrel-alert: shows one alert for a host, so that the host needs neither an event loop nor a GUI library.
// The portability layer starts it with the stream to the host as descriptor 3 (alerts/AlertMessages.h). It
// exits when the alert is closed.
#include <fcntl.h>
#include <glib.h>

#include <chrono>
#include <cstdio>
#include <string_view>

#include "portability/alerts/helper/AlertWindow.h"
#include "portability/alerts/helper/ExitCode.h"
#include "portability/alerts/helper/HostStream.h"
#include "portability/alerts/helper/HostWatch.h"
#include "portability/alerts/helper/WindowSystem.h"

namespace {

using namespace alerthelper;
using portability::AlertEvent;
using portability::AlertRequest;

constexpr int kStream = 3;
constexpr std::chrono::seconds kLongestWaitForRequest{30};
constexpr std::chrono::seconds kLongestWaitForWindow{60};

constexpr char kPurpose[] =
    "dovrel-alert shows the alerts of programs that use Dovrel.\n"
    "The library starts it; it is not meant to be started by hand and takes no arguments.\n";

int answerArguments(std::string_view argument, bool isOnlyOne) {
    if (isOnlyOne && argument == "--version") {
        std::printf("dovrel-alert %s\n", DOVREL_VERSION);
        return kFinished;
    }
    const bool asksForHelp = isOnlyOne && argument == "--help";
    std::fputs(kPurpose, asksForHelp ? stdout : stderr);
    return asksForHelp ? kFinished : kWrongUse;
}

int showAlert(HostStream& host, HostWatch& watch, const AlertRequest& request) {
    if (!connectToWindowSystem()) return kNotShown;
    GMainLoop* const loop = g_main_loop_new(nullptr, FALSE);
    size_t pressed = 0;
    {
        AlertWindow window(request, {[&] {
                                         host.send({AlertEvent::Kind::shown, 0});
                                         watch.windowIsShown();
                                     },
                                     [&] {
                                         host.send({AlertEvent::Kind::help, 0});
                                     },
                                     [&](size_t button) {
                                         pressed = button;
                                         g_main_loop_quit(loop);
                                     }});
        window.present();
        g_main_loop_run(loop);
    }
    g_main_loop_unref(loop);
    host.send({AlertEvent::Kind::pressed, pressed});
    return kFinished;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc > 1) return answerArguments(argv[1], argc == 2);
    HostStream host(kStream);
    if (!host.isStream()) return answerArguments("", false);
    fcntl(kStream, F_SETFD, FD_CLOEXEC);
    const auto request = host.receive(kLongestWaitForRequest);
    if (!request) return kBadMessage;
    HostWatch watch(kStream, request->host, kLongestWaitForWindow);
    return showAlert(host, watch, *request);
}
