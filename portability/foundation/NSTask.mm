#include "portability/processes/ChildProcess.h"
#include "portability/processes/DetachedProcess.h"
#include "portability/processes/PreparedProgram.h"

#import <Foundation/Foundation.h>

#include <fcntl.h>
#include <sys/wait.h>

#include <cstring>
#include <memory>

namespace {

using portability::ChildProcess;

// The descriptors of a task's pipes while the task is being launched.
class Pipes {
   public:
    Pipes(NSPipe* output, NSPipe* error) : output_(output), error_(error) {}

    // Returns the descriptors that the program gets as 0, 1 and 2.
    std::vector<int> descriptors() const {
        return {inherited(0), writingEnd(output_, 1), writingEnd(error_, 2)};
    }

    void closeWritingEnds() const {
        [[output_ fileHandleForWriting] closeFile];
        if (error_ != output_) [[error_ fileHandleForWriting] closeFile];
    }

   private:
    // Returns the host's descriptor for the program to inherit. In a host that has closed its standard
    // streams, a pipe may have this number; the program then gets /dev/null.
    int inherited(int descriptor) const {
        const bool isOpen = fcntl(descriptor, F_GETFD) >= 0;
        return isOpen && !isPartOf(output_, descriptor) && !isPartOf(error_, descriptor)
                   ? descriptor
                   : portability::kNullDevice;
    }

    int writingEnd(NSPipe* pipe, int other) const {
        return pipe == nil ? inherited(other) : [[pipe fileHandleForWriting] fileDescriptor];
    }

    static bool isPartOf(NSPipe* pipe, int descriptor) {
        return pipe != nil && ([[pipe fileHandleForReading] fileDescriptor] == descriptor ||
                               [[pipe fileHandleForWriting] fileDescriptor] == descriptor);
    }

    NSPipe* const output_;
    NSPipe* const error_;
};

std::vector<std::string> toTexts(NSString* first, NSArray* others) {
    std::vector<std::string> texts = {[first UTF8String]};
    for (NSUInteger index = 0; index < [others count]; ++index)
        texts.emplace_back([[others objectAtIndex:index] UTF8String]);
    return texts;
}

}  // namespace

@interface DovrelTask (Private)
- (void)requireNotLaunched;
@end

@implementation DovrelTask

- (void)dealloc {
    delete static_cast<ChildProcess*>(process_);
    [launchPath_ release];
    [arguments_ release];
    [output_ release];
    [error_ release];
    [super dealloc];
}

- (void)requireNotLaunched {
    if (process_ != nullptr) [NSException raise:NSInvalidArgumentException format:@"the task was launched"];
}

- (void)setLaunchPath:(NSString*)path {
    [self requireNotLaunched];
    if (path == nil) [NSException raise:NSInvalidArgumentException format:@"no launch path"];
    [launchPath_ autorelease];
    launchPath_ = [path copy];
}

- (void)setArguments:(NSArray*)arguments {
    [self requireNotLaunched];
    [arguments_ autorelease];
    arguments_ = [arguments copy];
}

- (void)setStandardOutput:(id)pipe {
    [self requireNotLaunched];
    [output_ autorelease];
    output_ = [pipe retain];
}

- (void)setStandardError:(id)pipe {
    [self requireNotLaunched];
    [error_ autorelease];
    error_ = [pipe retain];
}

- (void)launch {
    [self requireNotLaunched];
    if (launchPath_ == nil) [NSException raise:NSInvalidArgumentException format:@"no launch path"];
    const Pipes pipes(output_, error_);
    auto process = std::make_unique<ChildProcess>();
    const int failure = process->start({[launchPath_ UTF8String],
                                        toTexts(launchPath_, arguments_),
                                        portability::environmentWithout(std::string()),
                                        pipes.descriptors()});
    if (failure != 0) {
        process.reset();
        [NSException raise:NSInvalidArgumentException
                    format:@"%@ cannot be launched: %s", launchPath_, strerror(failure)];
    }
    process_ = process.release();
    pipes.closeWritingEnds();
}

- (BOOL)isRunning {
    return process_ != nullptr && static_cast<const ChildProcess*>(process_)->isRunning();
}

- (int)terminationStatus {
    if (process_ == nullptr || [self isRunning])
        [NSException raise:NSInvalidArgumentException format:@"the task has not ended"];
    const int status = static_cast<const ChildProcess*>(process_)->waitStatus();
    return WIFSIGNALED(status) ? WTERMSIG(status) : WEXITSTATUS(status);
}

@end
