#include "InterProcessCommunication/ApplicationLauncher.h"

#import <Foundation/Foundation.h>

#include <unistd.h>

namespace dovrel {

namespace {

constexpr int kNotRun = -1;
constexpr useconds_t kPollInterval = 1000;

// Raises for bytes that are no UTF-8 text, as the task does for what it cannot take.
void addArguments(NSMutableArray* list, const std::vector<std::string>& arguments) {
    for (const std::string& argument : arguments)
        [list addObject:[NSString stringWithUTF8String:argument.c_str()]];
}

void waitForExit(NSTask* task) {
    while ([task isRunning]) usleep(kPollInterval);
}

// Objective-C exceptions end here; no C++ exception passes through.
int runTask(NSTask* task, NSString* command, const std::vector<std::string>* arguments,
            NSMutableArray* list) {
    @try {
        [task setLaunchPath:command];
        if (arguments != nullptr) {
            addArguments(list, *arguments);
            [task setArguments:list];
        }
        [task setStandardOutput:[NSPipe pipe]];
        [task setStandardError:[NSPipe pipe]];
        [task launch];
        waitForExit(task);
        return [task terminationStatus];
    } @catch (...) {
        NSLog(@"Task execution failed! \n\n command: \"%@\" \n\n arguments: \"%@\"", [command description],
              [list description]);
        return kNotRun;
    }
}

}  // namespace

ApplicationLauncher::~ApplicationLauncher() = default;

int ApplicationLauncher::RunTask(const std::string& command,
                                 const std::vector<std::string>* arguments) const {
    NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
    NSString* const path = [NSString stringWithUTF8String:command.c_str()];
    int status = kNotRun;
    if ([path length] > 0) {
        NSTask* const task = [[NSTask alloc] init];
        NSMutableArray* const list = arguments == nullptr ? nil : [[NSMutableArray alloc] init];
        status = runTask(task, path, arguments, list);
        [list release];
        [task release];
    }
    [pool release];
    return status;
}

}  // namespace dovrel
