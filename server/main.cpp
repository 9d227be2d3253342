// Merrowd, the development server: a real server for people who write hosts or test the client library.
#include <unistd.h>

#include <cstdlib>
#include <iostream>
#include <string>

#include "platform/files/Places.h"
#include "server/EventServer.h"
#include "server/RunningProcess.h"
#include "server/ServerFiles.h"
#include "server/SettingsFile.h"

namespace {

using namespace merrowd;

// The applications of one server have consecutive numbers, and the next server begins at another
// number. So a host that did not notice the change is told that it is not registered, and is not
// taken for another application.
uint32_t firstApplication() {
    return (static_cast<uint32_t>(getpid()) & 0x7FFF) << 16 | 1;
}

std::string settingsPath() {
    return dovrel::fileSystemPath(std::string(dovrel::places::kInstallFolder) + kSettingsName);
}

std::string endNote(const RunningProcess& process) {
    if (process.signalNumber() == 0) return "ended";
    return "ended by signal " + std::to_string(process.signalNumber());
}

}  // namespace

int main() {
    RunningProcess process;
    ServerState state(firstApplication());
    ExchangeLog log(dovrel::logFolderPath(true) + kLogName);
    Exchanges exchanges(state, process, log);
    ControlCalls control(state, process, log);
    readSettingsFile(settingsPath(), control);
    // The library starts servers without standard error; people who start one by hand see the problems.
    for (const std::string& problem : control.startProblems())
        std::cerr << "Merrowd: " << problem << "\n";
    if (state.settings.log)
        log.note("Merrowd " MERROWD_VERSION " started as process " + std::to_string(getpid()));
    if (state.settings.endAtStart) return EXIT_SUCCESS;

    EventServer server(state, exchanges, control);
    if (!server.run()) {
        log.note("the handlers of events could not be installed");
        return EXIT_FAILURE;
    }
    if (server.vanishes()) process.vanish();
    if (state.settings.log) log.note(endNote(process));
    return EXIT_SUCCESS;
}
