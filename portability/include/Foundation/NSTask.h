// A child task with the platform's methods, in place of GNUstep's. That one starts a program in a child that,
// if the program cannot be executed, runs the exit functions of the host and exits with status 255; and it
// takes SIGCHLD from the host.
//
// The class has a name of its own, because a host can have the class of GNUstep loaded.
#pragma once

#import <Foundation/NSObject.h>

@class NSArray, NSString;

#if defined(__cplusplus)
extern "C" {
#endif

/// A task belongs to one thread at a time. The program gets this process's environment and folder and its
/// standard input, no other descriptor but its outputs, and runs in a session of its own, with no signal
/// blocked or ignored. It outlives its task.
///
/// Failures raise NSInvalidArgumentException.
@interface DovrelTask : NSObject {
    NSString* launchPath_;
    NSArray* arguments_;
    id output_;
    id error_;
    void* process_;
}

/// A path as execve takes it; the search path is not used. Raises if it is nil or the task was launched.
- (void)setLaunchPath:(NSString*)path;

/// Strings, without the program's name. Raises if the task was launched.
- (void)setArguments:(NSArray*)arguments;

/// The program writes to this pipe; nil means this process's standard output. Nobody reads the pipe on behalf
/// of the task: as on the platform, a program that has filled it (64 KiB) waits until it is read or closed.
/// Raises if the task was launched.
- (void)setStandardOutput:(id)pipe;
- (void)setStandardError:(id)pipe;

/// Returns when the program runs, and closes this process's writing ends of the pipes. Raises if it cannot be
/// run, there is no path, or the task was launched before. The host's exit functions, signal actions and
/// handling of children are not touched: no SIGCHLD arrives for the program.
- (void)launch;

/// NO before the launch.
- (BOOL)isRunning;

/// The exit status, or the number of the signal that ended the program. Raises unless the program has ended.
- (int)terminationStatus;

@end

@compatibility_alias NSTask DovrelTask;

#if defined(__cplusplus)
}
#endif
