// A child task with the platform's methods. It replaces GNUstep's class for two reasons. If the program
// cannot be executed, GNUstep's child process runs the host's exit functions and exits with status 255.
// GNUstep's class also handles the host's SIGCHLD.
//
// This class has its own name, because a host may have loaded GNUstep's class.
#pragma once

#import <Foundation/NSObject.h>

@class NSArray, NSString;

#if defined(__cplusplus)
extern "C" {
#endif

/// A child task. Not thread-safe: one thread at a time. The program gets this process's environment, current
/// folder and standard input. It gets no other descriptors except its outputs. It runs in its own session,
/// with no signal blocked or ignored. It continues to run if its task object is released.
///
/// Failures raise NSInvalidArgumentException.
@interface DovrelTask : NSObject {
    NSString* launchPath_;
    NSArray* arguments_;
    id output_;
    id error_;
    void* process_;
}

/// Sets the path of the program for execve; the search path is not used. Raises if it is nil or the task
/// was launched.
- (void)setLaunchPath:(NSString*)path;

/// Sets the arguments: strings, without the program's name. Raises if the task was launched.
- (void)setArguments:(NSArray*)arguments;

/// Set the pipe to which the program writes; nil means this process's standard output (or standard error).
/// The task does not read the pipe. As on the platform, a program that has filled it (64 KiB) waits until the
/// pipe is read or closed. Both methods raise if the task was launched.
- (void)setStandardOutput:(id)pipe;
- (void)setStandardError:(id)pipe;

/// Starts the program and returns when it runs. Closes this process's writing ends of the pipes. Raises if
/// the program cannot be executed, the path is not set, or the task was launched before. Does not affect the
/// host's exit functions, signal actions and child handling: the host gets no SIGCHLD for the program.
- (void)launch;

/// Returns whether the program is running; NO before the launch.
- (BOOL)isRunning;

/// Returns the exit status, or the number of the signal that ended the program. Raises unless the program
/// has ended.
- (int)terminationStatus;

@end

@compatibility_alias NSTask DovrelTask;

#if defined(__cplusplus)
}
#endif
