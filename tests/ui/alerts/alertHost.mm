// A host that shows alerts and writes the results to standard output, for tests that press their buttons:
//
//     alertHost show KIND TITLE BODY [KIND TITLE BODY]...
//         one after the other; "answer N" after each
//     alertHost thread KIND TITLE BODY
//         in a task, while the main thread waits for a line
//     alertHost loop KIND TITLE BODY
//         in a task, while the main thread runs Foundation's loop
//     alertHost state KIND TITLE BODY ARGUMENT...
//         "changed ..." for each difference in the host's state, then "end"
//     alertHost memory KIND TITLE BODY
//         "window library" if the process has loaded one by then, then "end"
//     alertHost reserved KIND TITLE BODY
//         twice, with different values of the reserved argument
//     alertHost pause KIND TITLE BODY
//         twice, with a wait for a line in between
//     alertHost help
//         opens the help pages; "status N"
//     alertHost management
//         "yes" when this is the management application, else "no"
#import <Foundation/Foundation.h>
#include <signal.h>

#include <atomic>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

#include "settings/MultiLanguageSupport.h"
#include "tests/support/HostState.h"
#include "ui/alerts/HelpPages.h"
#include "ui/alerts/MacOSXMessageDialog.h"
#include "ui/information/Component.h"

namespace {

using Arguments = std::vector<std::string>;

void tell(const std::string& line) { std::cout << line << std::endl; }

void show(const Arguments& arguments, size_t first, int reserved = 0) {
    dovrel::MacOSXMessageDialog dialog;
    const int answer = dialog.showAlert(arguments[first + 1].c_str(), arguments[first + 2].c_str(),
                                        std::stoi(arguments[first]), reserved);
    tell("answer " + std::to_string(answer));
}

void waitForLine() {
    std::string line;
    std::getline(std::cin, line);
}

bool hasWindowLibrary() {
    std::ifstream maps("/proc/self/maps");
    const std::string content(std::istreambuf_iterator<char>(maps), {});
    for (const char* library : {"libgnustep-gui", "libX11", "libwayland", "libgtk", "libgdk"})
        if (content.find(library) != std::string::npos) return true;
    return false;
}

std::vector<std::string> readProcessArguments() {
    NSArray* const arguments = [[NSProcessInfo processInfo] arguments];
    std::vector<std::string> texts;
    for (NSUInteger index = 0; index < [arguments count]; ++index)
        texts.push_back([[arguments objectAtIndex:index] UTF8String]);
    return texts;
}

void ignoreSignal(int) {}

int runThread(const Arguments& arguments) {
    std::thread task([&] { show(arguments, 0); });
    waitForLine();
    task.join();
    return 0;
}

int runLoop(const Arguments& arguments) {
    std::atomic<bool> done{false};
    std::thread task([&] {
        show(arguments, 0);
        done = true;
    });
    while (!done) {
        [[NSRunLoop currentRunLoop] runMode:NSDefaultRunLoopMode
                                 beforeDate:[NSDate dateWithTimeIntervalSinceNow:0.05]];
    }
    task.join();
    return 0;
}

// With SIGPIPE at its default action, which Foundation would change at its first use.
void setSignals() {
    struct sigaction action = {};
    action.sa_handler = ignoreSignal;
    for (int number : {SIGINT, SIGCHLD}) sigaction(number, &action, nullptr);
    signal(SIGTERM, SIG_IGN);
    signal(SIGPIPE, SIG_DFL);
}

int runState(const Arguments& arguments, const dovrel::test::HostState& before) {
    const std::vector<std::string> argumentsBefore = readProcessArguments();
    NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
    [[[NSObject alloc] init] autorelease];
    show(arguments, 0);
    if ([pool autoreleaseCount] != 1) tell("changed the host's pool");
    [pool release];
    if (readProcessArguments() != argumentsBefore) tell("changed the arguments");
    for (const std::string& change : before.changes()) tell("changed " + change);
    tell("end");
    return 0;
}

int runMemory(const Arguments& arguments) {
    show(arguments, 0);
    if (hasWindowLibrary()) tell("window library");
    tell("end");
    return 0;
}

int runReserved(const Arguments& arguments) {
    for (int reserved : {-1, 7}) show(arguments, 0, reserved);
    return 0;
}

int runPause(const Arguments& arguments) {
    show(arguments, 0);
    waitForLine();
    show(arguments, 0);
    return 0;
}

int runHelp() {
    tell("status " + std::to_string(dovrel::openHelp()));
    return 0;
}

int runManagement() {
    tell(dovrel::isManagementApplication() ? "yes" : "no");
    return 0;
}

int run(const std::string& mode, const Arguments& arguments, const dovrel::test::HostState& before) {
    if (mode == "help") return runHelp();
    if (mode == "management") return runManagement();
    dovrel::MultiLanguageSupport::initialize("English");
    if (mode == "reserved") return runReserved(arguments);
    if (mode == "pause") return runPause(arguments);
    if (mode == "thread") return runThread(arguments);
    if (mode == "loop") return runLoop(arguments);
    if (mode == "state") return runState(arguments, before);
    if (mode == "memory") return runMemory(arguments);
    for (size_t first = 0; first + 2 < arguments.size(); first += 3) show(arguments, first);
    return 0;
}

}  // namespace

int main(int count, char** values) {
    const std::string mode = values[1];
    if (mode == "state") setSignals();
    const dovrel::test::HostState before;  // ahead of any use of Foundation
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    const int result = run(mode, Arguments(values + 2, values + count), before);
    [pool release];
    return result;
}
