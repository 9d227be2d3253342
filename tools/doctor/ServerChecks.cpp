#include "tools/doctor/ServerChecks.h"

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#include "InterProcessCommunication/Client_to_POS_Communicator.h"
#include "InterProcessCommunication/POSCommands.h"
#include "InterProcessCommunication/ServerDiscovery.h"
#include "client/exceptions/CPPException.h"
#include "platform/CFObject.h"
#include "platform/files/Places.h"
#include "platform/trace/StatusNames.h"
#include "tools/Subcommand.h"
#include "tools/calls/Progress.h"
#include "tools/doctor/InstallationChecks.h"
#include "tools/doctor/InterfaceVersion.h"
#include "tools/server/ServerChannel.h"
#include "tools/server/ServerLife.h"
#include "tools/server/ServerProcesses.h"
#include "tools/status/Advice.h"
#include "tools/system/SystemFacts.h"

namespace dovrel::tools {

namespace {

constexpr char kInstalled[] = "server";
constexpr char kRunning[] = "server process";
constexpr char kHandshake[] = "handshake";
constexpr char kVersion[] = "server version";

const std::string& serverBundle() {
    static const std::string path = std::string(places::kInstallFolder) + places::kServerBundleName;
    return path;
}

std::string serverProgram() {
    return fileSystemPath(serverBundle() + "/Contents/MacOS/" + kServerProcessName);
}

std::string userName(uid_t user) {
    const passwd* const entry = getpwuid(user);
    return entry != nullptr ? entry->pw_name : "with the number " + std::to_string(user);
}

std::string processText(pid_t process) {
    return "process " + std::to_string(process);
}

// A process that runs the server's program and does not serve this user.
void addOtherProcess(const ProgramProcess& process, CheckResults& results) {
    if (process.user == geteuid())
        return results.addWarning(
            kRunning, processText(process.id) + " runs the server's program, but hosts cannot reach it",
            "It may be ending, or belong to another container or system root. If it stays, end it "
            "with \"kill " +
                std::to_string(process.id) + "\".");
    results.addWarning(
        kRunning,
        processText(process.id) + " is a server of the user " + userName(process.user) +
            ": it does not serve this user",
        "Each user has a server of his own, which the first call launches. To use the other server, run "
        "the host as the user " +
            userName(process.user) + "; to end it, that user runs \"dovrel server stop\".");
}

void addOwnServer(pid_t server, const std::vector<ProgramProcess>& programs, CheckResults& results) {
    const bool isStopped = std::any_of(
        programs.begin(), programs.end(),
        [server](const ProgramProcess& process) { return process.id == server && process.isStopped; });
    if (isStopped)
        return results.addTrouble(kRunning, processText(server) + " is stopped by a signal or a debugger",
                                  "Continue it with \"kill -CONT " + std::to_string(server) + "\".");
    results.addOk(kRunning, processText(server) + " of the user " + userName(geteuid()));
}

// The platform reports a folder that may not be entered as a missing one.
void addMissingServer(CheckResults& results) {
    const std::string path = fileSystemPath(serverBundle());
    if (access(path.c_str(), F_OK) != 0 && errno == EACCES)
        return results.addTrouble(
            kInstalled, "this user may not reach " + path,
            "Let root allow all users to read and enter the folders of the installation.");
    results.addTrouble(kInstalled, "no server is installed: there is no " + path,
                       "Install a server. The package dovrel-server contains the development server.");
}

void addFailedHandshake(const HandshakeResult& result, CheckResults& results) {
    results.addTrouble(kHandshake, "the server does not answer: status " + statusText(result.status),
                       statusAdvice(result.status));
}

void compareVersions(CheckResults& results) {
    const uint32_t version = queryInterfaceVersion();
    const std::string installed = readBundleVersion(serverBundle());
    const std::string needed = std::to_string(kPOSInterfaceVersion);
    if (version == kPOSInterfaceVersion)
        return results.addOk(kVersion,
                             (installed.empty() ? "" : installed + ", ") + "interface version " + needed);
    results.addTrouble(
        kVersion,
        "the server that runs has the interface version " + std::to_string(version) + ", the library needs " +
            needed,
        "Install the server that belongs to the library, end the running one with \"dovrel server stop\", "
        "and try again. In the development server, \"dovrel server set interfaceVersion " +
            needed + "\" sets the right one.");
}

void launch(CheckResults& results) {
    try {
        if (!isServerReachable()) launchInstalledServer();
        Client_to_POS_Communicator().WakeServer(serverEvent::kWakeTimeOutMs, serverEvent::kWakeAttempts);
    } catch (const ToolFailure& failure) {
        results.addTrouble(kRunning, failure.what(), "The number says why; \"dovrel status\" explains it.");
    }
}

}  // namespace

bool checkInstalledServer(CheckResults& results) {
    CFURLRef found = nullptr;
    const OSErr error = FindServerApplication(&found);
    const CFObject<CFURLRef> application(found);
    if (error != noErr) {
        addMissingServer(results);
        return false;
    }
    const std::string program = serverProgram();
    if (access(program.c_str(), X_OK) != 0) {
        results.addTrouble(kInstalled, program + " cannot be run: " + std::strerror(errno),
                           "Install the server again.");
        return false;
    }
    const std::string version = readBundleVersion(serverBundle());
    results.addOk(kInstalled,
                  fileSystemPath(serverBundle()) + (version.empty() ? "" : ", version " + version));
    return true;
}

bool checkRunningServers(bool launches, CheckResults& results) {
    if (launches) launch(results);
    const std::vector<pid_t> servers = findServers();
    const bool isReachable = !servers.empty() || isServerReachable();
    const std::vector<ProgramProcess> programs = findProcessesOf(serverProgram());
    for (const pid_t server : servers)
        addOwnServer(server, programs, results);
    if (servers.empty() && isReachable)
        results.addNote(kRunning,
                        "a server of this user runs under another program, for example an interpreter");
    if (!isReachable && !launches)
        results.addNote(kRunning, "no server of this user runs; the first call launches it",
                        "\"dovrel doctor --launch\" launches it now, and checks the exchange with it.");
    for (const ProgramProcess& process : programs)
        if (std::count(servers.begin(), servers.end(), process.id) == 0) addOtherProcess(process, results);
    return isReachable;
}

void checkExchange(CheckResults& results) {
    const Progress progress("waiting for the server");
    const HandshakeResult handshake = makeHandshake();
    if (handshake.status != noErr) return addFailedHandshake(handshake, results);
    char time[32];
    std::snprintf(time, sizeof time, "%.1f ms", handshake.time.count());
    results.addOk(kHandshake, std::string("answered in ") + time);
    try {
        compareVersions(results);
    } catch (CPPException* caught) {
        const std::unique_ptr<CPPException> failure(caught);
        results.addTrouble(
            kVersion, std::string("the server does not tell its interface version: ") + failure->getMessage(),
            "Install the server that belongs to the library.");
    }
}

}  // namespace dovrel::tools
