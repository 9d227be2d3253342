// A host that shows alerts and tells what it sees, for tests that press their buttons:
//
//     alertHost show KIND TITLE BODY [KIND TITLE BODY]...
//         one after the other; "answer N" after each
//     alertHost inspect KIND TITLE BODY
//         "text ..." and "button ..." for what stands in the open alert, "end", then "answer N"
//     alertHost thread KIND TITLE BODY
//         in a task, while the main thread waits for a line before it runs its loop
//     alertHost state KIND TITLE BODY FILE...
//         "changed ..." for each thing of the host's that is not as before
//     alertHost memory KIND TITLE BODY
//         "window library before" and "after", if it is in the process by then
//     alertHost reserved KIND TITLE BODY
//         twice, with different values of the reserved argument
//     alertHost content KIND TITLE BODY RETURN...
//         an alert for each RETURN, which the window classes give back at once; before each answer
//         "message ...", "informative ...", "style N", "help N", and "button ..." for each one added
//     alertHost pause KIND TITLE BODY
//         twice, with a wait for a line in between
//     alertHost ties KIND TITLE BODY
//         then has the window classes look for other programs; "end"
//     alertHost help
//         opens the help pages; "status N"
//     alertHost helpbutton
//         presses the Help button of an alert; "shown" when it is taken care of
//     alertHost helpalert KIND TITLE BODY
//         "help" when the alert has a Help button and its press is taken care of, then "answer N"
//     alertHost management
//         "yes" when this is the management application, else "no"
#import <AppKit/AppKit.h>
#include <CoreServices/CoreServices.h>
#include <objc/runtime.h>
#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>
#include <string>
#include <thread>
#include <vector>

#include "settings/MultiLanguageSupport.h"
#include "ui/HelpPages.h"
#include "ui/MacOSXMessageDialog.h"
#include "ui/ManagementApplication.h"

namespace {

using Arguments = std::vector<std::string>;

void tell(const std::string& line) { std::cout << line << std::endl; }

int show(const Arguments& arguments, size_t first, int reserved = 0) {
    dovrel::MacOSXMessageDialog dialog;
    const int answer = dialog.showAlert(arguments[first + 1].c_str(), arguments[first + 2].c_str(),
                                        std::stoi(arguments[first]), reserved);
    tell("answer " + std::to_string(answer));
    return answer;
}

std::string oneLine(NSString* text) {
    return [[text stringByReplacingOccurrencesOfString:@"\n" withString:@"|"] UTF8String];
}

bool hasWindowLibrary() {
    std::ifstream maps("/proc/self/maps");
    const std::string content(std::istreambuf_iterator<char>(maps), {});
    return content.find("libgnustep-gui") != std::string::npos;
}

std::vector<std::string> hostState() {
    std::vector<std::string> state;
    for (int number = 1; number < NSIG; ++number) {
        struct sigaction action = {};
        if (sigaction(number, nullptr, &action) != 0) continue;
        char text[64];
        std::snprintf(text, sizeof text, "signal %d %p %x", number,
                      reinterpret_cast<void*>(action.sa_handler), static_cast<unsigned>(action.sa_flags));
        state.push_back(text);
    }
    char folder[4096] = "";
    state.push_back(std::string("folder ") + getcwd(folder, sizeof folder));
    state.push_back(std::string("locale ") + std::setlocale(LC_ALL, nullptr));
    NSArray* arguments = [[NSProcessInfo processInfo] arguments];
    for (NSUInteger index = 0; index < [arguments count]; ++index)
        state.push_back("argument " + oneLine([arguments objectAtIndex:index]));
    return state;
}

void ignoreSignal(int) {}

}  // namespace

// Looks into the open alert from within its own loop.
@interface AlertInspector : NSObject
- (void)inspect:(NSTimer*)timer;
@end

@implementation AlertInspector

- (void)tellView:(NSView*)view {
    if ([view isHidden]) return;
    if ([view isKindOfClass:NSClassFromString(@"NSButton")]) {
        // The alert's picture is a button, too.
        NSButton* button = (NSButton*)view;
        if ([button imagePosition] != NSImageOnly) tell("button " + oneLine([button title]));
    } else if ([view isKindOfClass:NSClassFromString(@"NSTextField")]) {
        tell("text " + oneLine([(NSTextField*)view stringValue]));
    }
    for (NSUInteger index = 0; index < [[view subviews] count]; ++index)
        [self tellView:[[view subviews] objectAtIndex:index]];
}

- (void)inspect:(NSTimer*)timer {
    NSWindow* window = [[NSClassFromString(@"NSApplication") sharedApplication] modalWindow];
    if (window == nil) return;
    [timer invalidate];
    [self tellView:[window contentView]];
    tell("end");
}

@end

namespace {

void startInspection() {
    AlertInspector* inspector = [[AlertInspector alloc] init];
    NSTimer* timer = [NSTimer timerWithTimeInterval:0.05
                                             target:inspector
                                           selector:@selector(inspect:)
                                           userInfo:nil
                                            repeats:YES];
    [[NSRunLoop currentRunLoop] addTimer:timer forMode:@"NSModalPanelRunLoopMode"];
    [inspector release];
}

int runThread(const Arguments& arguments) {
    std::atomic<bool> done{false};
    std::thread task([&] {
        show(arguments, 0);
        done = true;
    });
    tell("waiting");
    std::string line;
    std::getline(std::cin, line);
    while (!done) {
        [[NSRunLoop currentRunLoop] runMode:NSDefaultRunLoopMode
                                 beforeDate:[NSDate dateWithTimeIntervalSinceNow:0.05]];
    }
    task.join();
    return 0;
}

int runState(const Arguments& arguments) {
    struct sigaction action = {};
    action.sa_handler = ignoreSignal;
    for (int number : {SIGINT, SIGCHLD, SIGPIPE}) sigaction(number, &action, nullptr);
    signal(SIGTERM, SIG_IGN);
    const std::vector<std::string> before = hostState();
    NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
    [[[NSObject alloc] init] autorelease];
    show(arguments, 0);
    if ([pool autoreleaseCount] != 1) tell("changed the host's pool");
    [pool release];
    const std::vector<std::string> after = hostState();
    for (size_t index = 0; index < before.size() || index < after.size(); ++index) {
        const std::string old = index < before.size() ? before[index] : "nothing";
        const std::string now = index < after.size() ? after[index] : "nothing";
        if (old != now) tell("changed " + old + " to " + now);
    }
    tell("end");
    return 0;
}

int runMemory(const Arguments& arguments) {
    if (hasWindowLibrary()) tell("window library before");
    show(arguments, 0);
    if (hasWindowLibrary()) tell("window library after");
    tell("end");
    return 0;
}

int runReserved(const Arguments& arguments) {
    for (int reserved : {-1, 7}) show(arguments, 0, reserved);
    return 0;
}

int runPause(const Arguments& arguments) {
    show(arguments, 0);
    std::string line;
    std::getline(std::cin, line);
    show(arguments, 0);
    return 0;
}

int runTies(const Arguments& arguments) {
    show(arguments, 0);
    // It is the window classes' way to tell other programs of what goes on.
    if ([[NSClassFromString(@"NSWorkspace") sharedWorkspace] notificationCenter] == nil) tell("no workspace");
    tell("end");
    return 0;
}

int runHelp() {
    tell("status " + std::to_string(dovrel::openHelp()));
    return 0;
}

int runHelpButton() {
    id help = [[[NSClassFromString(@"DovrelAlertHelp") alloc] init] autorelease];
    if ([help alertShowHelp:nil]) tell("shown");
    return 0;
}

void setShowsHelp(id alert, SEL, BOOL shows) {
    if (shows && [[alert delegate] alertShowHelp:alert]) tell("help");
}

// Not every version of the window classes draws the Help button, so it is pressed when the alert gets it.
int runHelpAlert(const Arguments& arguments) {
    NSApplicationLoad();
    const Method button =
        class_getInstanceMethod(NSClassFromString(@"NSAlert"), @selector(setShowsHelp:));
    method_setImplementation(button, reinterpret_cast<IMP>(reinterpret_cast<void (*)()>(setShowsHelp)));
    show(arguments, 0);
    return 0;
}

NSInteger returned = 0;

NSInteger tellContent(id alert, SEL) {
    tell("message " + oneLine([alert messageText]));
    tell("informative " + oneLine([alert informativeText]));
    tell("style " + std::to_string([alert alertStyle]));
    tell("help " + std::to_string([alert showsHelp]));
    for (NSUInteger index = 0; index < [[alert buttons] count]; ++index)
        tell("button " + oneLine([[[alert buttons] objectAtIndex:index] title]));
    return returned;
}

int runContent(const Arguments& arguments) {
    NSApplicationLoad();
    const Method run = class_getInstanceMethod(NSClassFromString(@"NSAlert"), @selector(runModal));
    method_setImplementation(run, reinterpret_cast<IMP>(reinterpret_cast<void (*)()>(tellContent)));
    for (size_t index = 3; index < arguments.size(); ++index) {
        returned = std::stoi(arguments[index]);
        show(arguments, 0);
    }
    return 0;
}

int runManagement() {
    tell(dovrel::isManagementApplication() ? "yes" : "no");
    return 0;
}

int run(const std::string& mode, const Arguments& arguments) {
    if (mode == "help") return runHelp();
    if (mode == "helpbutton") return runHelpButton();
    if (mode == "management") return runManagement();
    dovrel::MultiLanguageSupport::initialize("English");
    if (mode == "helpalert") return runHelpAlert(arguments);
    if (mode == "content") return runContent(arguments);
    if (mode == "reserved") return runReserved(arguments);
    if (mode == "ties") return runTies(arguments);
    if (mode == "pause") return runPause(arguments);
    if (mode == "inspect") startInspection();
    if (mode == "thread") return runThread(arguments);
    if (mode == "state") return runState(arguments);
    if (mode == "memory") return runMemory(arguments);
    for (size_t first = 0; first + 2 < arguments.size(); first += 3) show(arguments, first);
    return 0;
}

}  // namespace

int main(int count, char** values) {
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    const int result = run(values[1], Arguments(values + 2, values + count));
    [pool release];
    return result;
}
