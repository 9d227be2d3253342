#include "InterProcessCommunication/ApplicationLauncher.h"

#import <Foundation/Foundation.h>

#include <unistd.h>

namespace dovrel {

namespace {

constexpr int kNotRun = -1;
constexpr useconds_t kPollInterval = 1000;

// Raises an Objective-C exception if an argument is not UTF-8. NSTask also raises one for what it cannot use.
void addArguments(NSMutableArray* list, const std::vector<std::string>& arguments) {
    for (const std::string& argument : arguments)
        [list addObject:[NSString stringWithUTF8String:argument.c_str()]];
}

// Raises an Objective-C exception if the task cannot be launched.
int launchAndWait(NSTask* task, NSString* command, const std::vector<std::string>* arguments,
                  NSMutableArray* list) {
    [task setLaunchPath:command];
    if (arguments != nullptr) {
        addArguments(list, *arguments);
        [task setArguments:list];
    }
    NSPipe* const output = [NSPipe pipe];
    NSPipe* const error = [NSPipe pipe];
    [task setStandardOutput:output];
    [task setStandardError:error];
    [task launch];
    while ([task isRunning]) usleep(kPollInterval);
    // The pipes are closed here and not left to the task object. That object may live until the run loop of
    // its thread runs, which may never happen.
    [[output fileHandleForReading] closeFile];
    [[error fileHandleForReading] closeFile];
    return [task terminationStatus];
}

// Objective-C exceptions are caught here. No C++ exception passes through this function.
int runTask(NSTask* task, NSString* command, const std::vector<std::string>* arguments,
            NSMutableArray* list) {
    @try {
        return launchAndWait(task, command, arguments, list);
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
