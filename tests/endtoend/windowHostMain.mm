// A host on a desktop. It reads commands from standard input, one per line, and writes
// results to standard output as lines:
//
//     register NAME [OPTION]...      "register STATUS"
//     command NAME                   "command STATUS"
//     instantiate CLASS              "instantiate STATUS"
//     libraries                      "libraries" and the window system's libraries that are in the process
//     thread LINE                    "thread NUMBER" (the system's); the new thread then carries out LINE
//     loop                           the main thread runs its loop until all threads have ended, then "loop"
//     turn LINE                      the same, but first writes "inside" and carries out LINE within the loop
//
// Statuses are hexadecimal. Every command except "thread" is finished before the next line is read.
#import <Foundation/Foundation.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <fstream>
#include <iostream>
#include <sstream>
#include <thread>
#include <vector>

#include "tests/support/PosLibrary.h"

namespace {

using dovrel::test::PosLibrary;

// Results go to a copy of standard output. The library also writes to standard output, so that
// is redirected to standard error.
const int answers = dup(STDOUT_FILENO);

// Each line is one write, so that lines of several threads do not mix.
void tell(std::string line) {
    line += '\n';
    if (write(answers, line.data(), line.size()) < 0) _exit(2);
}

class Host {
   public:
    explicit Host(const std::string& bundle) : library_(bundle) { library_.InitializePOS(); }
    ~Host() { library_.TerminatePOS(); }

    void run(const std::string& line) {
        std::istringstream words(line);
        std::string what;
        words >> what >> std::ws;
        if (what == "register") tellStatus(what, registerApplication(words));
        if (what == "command") tellStatus(what, runCommand(rest(words)));
        if (what == "instantiate") tellStatus(what, instantiate(rest(words)));
        if (what == "libraries") tell(what + windowLibraries());
        if (what == "thread") startThread(rest(words));
        if (what == "loop") runLoop();
        if (what == "turn") runInsideLoop(rest(words));
    }

   private:
    static std::string rest(std::istream& words) {
        std::string text;
        std::getline(words, text);
        return text;
    }

    static void tellStatus(const std::string& what, uint32_t status) {
        std::ostringstream line;
        line << what << ' ' << std::hex << status;
        tell(line.str());
    }

    uint32_t registerApplication(std::istream& words) {
        std::string name;
        words >> name;
        std::vector<uint16_t> options;
        for (uint16_t option = 0; words >> option;) options.push_back(option);
        return library_.posRegisterApplicationWithClasses(name.c_str(), nullptr, 0, options.data(),
                                                          static_cast<uint32_t>(2 * options.size()),
                                                          &application_);
    }

    uint32_t runCommand(std::string name) {
        void* command = name.data();
        void* argument = nullptr;
        uint8_t* result = nullptr;
        uint32_t length = 0;
        const uint32_t status = library_.posExecuteCMD(
            application_, &command, static_cast<uint32_t>(name.size()), &argument, 0, &result, &length);
        library_.posDeleteDLLHeapData(result);
        return status;
    }

    uint32_t instantiate(std::string name) {
        name.resize(POS_IDENTIFIER_SIZE, '\0');
        void* classId = name.data();
        void* object = nullptr;
        const uint32_t status = library_.posInstantiateObject(application_, &classId, &object);
        library_.posFreeDllHeapData(object);
        return status;
    }

    static std::string windowLibraries() {
        std::ifstream file("/proc/self/maps");
        const std::string maps(std::istreambuf_iterator<char>(file), {});
        std::string found;
        for (const char* name : {"libgnustep-gui", "libX11", "libgtk", "libwayland"}) {
            if (maps.find(name) != std::string::npos) found += std::string(" ") + name;
        }
        return found;
    }

    void startThread(const std::string& line) {
        ++running_;
        threads_.emplace_back(&Host::runInThread, this, line);
    }

    void runInThread(const std::string& line) {
        tell("thread " + std::to_string(syscall(SYS_gettid)));
        run(line);
        --running_;
    }

    void runLoop() {
        while (running_ > 0) {
            [[NSRunLoop currentRunLoop] runMode:NSDefaultRunLoopMode
                                     beforeDate:[NSDate dateWithTimeIntervalSinceNow:0.05]];
        }
        for (std::thread& thread : threads_) thread.join();
        threads_.clear();
        tell("loop");
    }

    // Defined below, after the class that the loop calls.
    void runInsideLoop(const std::string& line);

    PosLibrary library_;
    uint32_t application_ = 0;
    std::atomic<int> running_{0};
    std::vector<std::thread> threads_;
};

}  // namespace

// Carries out its line within the run loop.
@interface Turn : NSObject {
   @public
    Host* host;
    const std::string* line;
}
- (void)take:(NSTimer*)timer;
@end

@implementation Turn

- (void)take:(NSTimer*)timer {
    static_cast<void>(timer);
    tell("inside");
    host->run(*line);
}

@end

namespace {

void Host::runInsideLoop(const std::string& line) {
    Turn* const turn = [[[Turn alloc] init] autorelease];
    turn->host = this;
    turn->line = &line;
    NSTimer* const timer = [NSTimer timerWithTimeInterval:0
                                                   target:turn
                                                 selector:@selector(take:)
                                                 userInfo:nil
                                                  repeats:NO];
    [[NSRunLoop currentRunLoop] addTimer:timer forMode:NSDefaultRunLoopMode];
    runLoop();
}

}  // namespace

int main(int, char** values) {
    dup2(STDERR_FILENO, STDOUT_FILENO);
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    {
        Host host(values[1]);
        for (std::string line; std::getline(std::cin, line);) host.run(line);
    }
    [pool release];
    return 0;
}
