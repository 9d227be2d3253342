// A host whose failing calls bring up alerts, while its main thread runs none of the platform's loops:
//
//     endtoend_alert_host BUNDLE MAIN [HABIT]...
//
// MAIN, the main thread:
//     call        makes the call itself
//     join        waits in pthread_join for the thread that makes the call
//     join-two    the same with two such threads
//     sleep       sleeps until the thread is through
//     glib        runs GLib's loop until the thread is through
//     atexit      has returned from main; an exit handler makes the call. The host registered the handler
//                 before it loaded the library
// HABIT:
//     closed      descriptors 0 to 2 are closed
//     broken      standard output and error are a pipe that nobody reads
//     ignore      SIGCHLD is ignored
//     pipes       SIGPIPE is ignored; else its action is the default
//     subreaper   takes over those of its descendants that lose their parents
//     reap        a thread waits for every child; "reaped" if there ever is one
//     relative    the bundle is loaded by a relative path, and the folder left
//     fork        a line on standard input forks off a child, which keeps everything open and stays: "child"
//
// Output: "ready" before the call, "status STATUS" after each call (hexadecimal), "changed ..." for each
// difference from the state before the call, "end"; "changed by STEP ..." for each difference from the state before
// the library was loaded. New descriptors count only at the end, because a session has some of its own, and
// never if they are sockets, because the connection to the server outlives the session.
#include <fcntl.h>
#include <glib.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <thread>

#include "tests/support/HostState.h"
#include "tests/support/PosLibrary.h"
#include "tests/support/WaitUntil.h"

namespace {

using dovrel::test::HostState;
using dovrel::test::PosLibrary;

// Copied to a high number, because the host may have closed the standard streams.
const int answers = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 100);

// One write, so that lines of several threads do not mix.
void tell(std::string line) {
    line += '\n';
    if (write(answers, line.data(), line.size()) < 0) _exit(2);
}

std::set<std::string> habits;

bool has(const char* habit) {
    return habits.count(habit) != 0;
}

// The host's state before any code of the library was loaded.
std::unique_ptr<HostState> atFirst;

bool begins(const std::string& text, const char* beginning) {
    return text.rfind(beginning, 0) == 0;
}

void tellChangesBy(const char* step, bool isEnd = false) {
    for (const std::string& change : atFirst->changes()) {
        // The connection to the server and its memory remain for the next session.
        const bool isOfAConnection =
            change.find(": socket:") != std::string::npos || change.find(": /memfd:") != std::string::npos;
        const bool isOfASession = begins(change, "is descriptor") && (!isEnd || isOfAConnection);
        const bool isOfTheHost = has("relative") && change.find(" folder: ") != std::string::npos;
        if (!isOfASession && !isOfTheHost) tell(std::string("changed by ") + step + ": " + change);
    }
    // Not even for the time of the session.
    for (int stream = STDIN_FILENO; has("closed") && stream <= STDERR_FILENO; ++stream) {
        if (fcntl(stream, F_GETFD) >= 0)
            tell(std::string("changed by ") + step + ": stream " + std::to_string(stream) + " is open");
    }
}

class Host {
  public:
    /// Opens the session and then goes to the folder.
    Host(const std::string& bundle, const std::string& folder) : library_(bundle) {
        tellChangesBy("loading");
        library_.InitializePOS();
        tellChangesBy("initialising");
        library_.posRegisterApplicationWithClasses("Host", nullptr, 0, nullptr, 0, &application_);
        tellChangesBy("registering");
        instantiate();
        tellChangesBy("a call");
        if (chdir(folder.c_str()) != 0) _exit(2);
        noteState();
        tell("ready");
    }

    void noteState() { before_ = std::make_unique<HostState>(); }

    void call() const {
        std::string name = "ping";
        void* command = name.data();
        void* argument = nullptr;
        uint8_t* result = nullptr;
        uint32_t length = 0;
        tellStatus(library_.posExecuteCMD(application_, &command, static_cast<uint32_t>(name.size()),
                                          &argument, 0, &result, &length));
    }

    void unregister() const { tellStatus(library_.posUnregisterApplication(application_)); }

    void end() const {
        // A helper that has answered may still be ending.
        dovrel::test::waitUntil([this] { return before_->changes().empty(); });
        for (const std::string& change : before_->changes())
            tell("changed " + change);
        tellChangesBy("a failure");
        library_.TerminatePOS();
        tellChangesBy("terminating", true);
        tell("end");
    }

  private:
    // Makes calls that succeed, including a large one. They create everything that calls without alerts need.
    void instantiate() const {
        std::string name = "Echo";
        name.resize(POS_IDENTIFIER_SIZE, '\0');
        void* classId = name.data();
        void* object = nullptr;
        library_.posInstantiateObject(application_, &classId, &object);
        std::string argument(300'000, 'a');
        uint8_t* result = nullptr;
        uint32_t length = 0;
        const uint32_t status =
            library_.posCallMethod(application_, &object, "echo", reinterpret_cast<uint8_t*>(argument.data()),
                                   static_cast<uint32_t>(argument.size()), &result, &length);
        if (status != POS_OK || length != argument.size()) tell("the large call failed");
        library_.posDeleteDLLHeapData(result);
        library_.posFreeDllHeapData(object);
    }

    static void tellStatus(uint32_t status) {
        std::ostringstream line;
        line << "status " << std::hex << status;
        tell(line.str());
    }

    PosLibrary library_;
    uint32_t application_ = 0;
    std::unique_ptr<HostState> before_;
};

std::unique_ptr<Host> host;

void callAtExit() {
    host->noteState();  // the library has closed its connection already
    host->unregister();
    host->end();
}

void callWhileJoining() {
    std::thread([] { host->call(); }).join();
}

void callTwiceWhileJoining() {
    std::thread first([] { host->call(); });
    std::thread second([] { host->call(); });
    first.join();
    second.join();
}

void callWhileSleeping() {
    std::atomic<bool> isThrough{false};
    std::thread caller([&] {
        host->call();
        isThrough = true;
    });
    while (!isThrough)
        usleep(10000);
    caller.join();
}

void callInGLibsLoop() {
    GMainLoop* const loop = g_main_loop_new(nullptr, FALSE);
    std::thread caller([loop] {
        host->call();
        g_idle_add(
            [](void* data) -> gboolean {
                g_main_loop_quit(static_cast<GMainLoop*>(data));
                return G_SOURCE_REMOVE;
            },
            loop);
    });
    g_main_loop_run(loop);
    caller.join();
    g_main_loop_unref(loop);
}

void reapChildren() {
    for (;;) {
        if (waitpid(-1, nullptr, 0) > 0) {
            tell("reaped");
        } else {
            usleep(1000);
        }
    }
}

void forkWhenTold() {
    std::string line;
    if (!std::getline(std::cin, line)) return;
    if (fork() != 0) return;
    tell("child");
    for (;;)
        pause();
}

void breakStandardOutput() {
    int ends[2];
    if (pipe(ends) != 0) _exit(2);
    for (const int stream : {STDOUT_FILENO, STDERR_FILENO})
        dup2(ends[1], stream);
    close(ends[0]);
    close(ends[1]);
}

void takeUpHabits() {
    signal(SIGPIPE, has("pipes") ? SIG_IGN : SIG_DFL);
    if (has("broken")) breakStandardOutput();
    if (has("subreaper")) prctl(PR_SET_CHILD_SUBREAPER, 1);
    if (has("ignore")) signal(SIGCHLD, SIG_IGN);
    if (has("reap")) std::thread(reapChildren).detach();
    if (has("fork")) std::thread(forkWhenTold).detach();
    for (int stream = 0; has("closed") && stream <= STDERR_FILENO; ++stream)
        close(stream);
}

std::unique_ptr<Host> load(const std::string& bundle) {
    if (!has("relative")) return std::make_unique<Host>(bundle, ".");
    const size_t slash = bundle.rfind('/');
    if (chdir(bundle.substr(0, slash).c_str()) != 0) _exit(2);
    return std::make_unique<Host>("." + bundle.substr(slash), "/");
}

const std::pair<const char*, std::function<void()>> kWays[] = {{"call", [] { host->call(); }},
                                                               {"join", callWhileJoining},
                                                               {"join-two", callTwiceWhileJoining},
                                                               {"sleep", callWhileSleeping},
                                                               {"glib", callInGLibsLoop}};

}  // namespace

int main(int count, char** values) {
    const std::string way = values[2];
    habits.insert(values + 3, values + count);
    if (way == "atexit") std::atexit(callAtExit);
    if (way == "glib") g_main_context_default();  // with its descriptors
    takeUpHabits();
    atFirst = std::make_unique<HostState>();
    host = load(values[1]);
    if (way == "atexit") return 0;
    for (const auto& [name, function] : kWays) {
        if (way == name) function();
    }
    host->end();
    return 0;
}
