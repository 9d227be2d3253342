#include "tests/faults/FaultTrial.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <sstream>

#include "tests/support/FastClock.h"
#include "tests/support/HostState.h"

namespace dovrel::test {

namespace {

// Time-outs of the library are waited out, so they are made shorter: the longest takes 167 seconds. A call that can
// still succeed needs time for its server.
constexpr int kPaceOfSingleFaults = 20;
constexpr int kPaceOfLastingFaults = 200;
// Real seconds. No trial takes as long as this, unless a call hangs.
constexpr unsigned kLongestTrial = 100;

// The text that is printed if a trial crashes or hangs, and its descriptor: standard output may be redirected then.
char current[256];
const int output = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3);

void printCurrent(int signal) {
    const char* const what = signal == SIGALRM ? "hangs: " : "crashes: ";
    for (const char* text : {what, static_cast<const char*>(current), "\n"}) {
        if (write(output, text, std::strlen(text)) < 0) break;
    }
    ::signal(signal, SIG_DFL);
    raise(signal);
}

void watch(const Situation& situation, const Fault& fault) {
    std::ostringstream text;
    text << situation << ", " << fault;
    std::strncpy(current, text.str().c_str(), sizeof current - 1);
    for (const int number : {SIGALRM, SIGSEGV, SIGABRT, SIGBUS, SIGXFSZ, SIGPIPE})
        ::signal(number, &printCurrent);
    alarm(kLongestTrial);
}

// While it exists, what the library prints is dropped.
class Quiet {
  public:
    Quiet() {
        const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
        for (size_t i = 0; i < 2; ++i) {
            kept_[i] = fcntl(kStreams[i], F_DUPFD_CLOEXEC, 3);
            dup2(nowhere, kStreams[i]);
        }
        close(nowhere);
    }
    Quiet(const Quiet&) = delete;
    Quiet& operator=(const Quiet&) = delete;
    ~Quiet() {
        std::fflush(stdout);
        for (size_t i = 0; i < 2; ++i) {
            dup2(kept_[i], kStreams[i]);
            close(kept_[i]);
        }
    }

  private:
    static constexpr int kStreams[] = {STDOUT_FILENO, STDERR_FILENO};
    int kept_[2];
};

// Returns the changes of the state of the process. Descriptors are counted elsewhere.
std::string describeChanges(const HostState& state) {
    std::string text;
    for (const std::string& line : state.changes()) {
        if (line.find(" descriptor ") == std::string::npos) text += line + "\n";
    }
    return text;
}

}  // namespace

// Without spinning, the calls make the same system calls each time.
FaultTrial::FaultTrial(const TestRoot& root, const Situation& situation)
    : spinning_("POS_SPIN_US", "0"),
      root_(root),
      situation_(situation),
      host_(root.library()),
      neighbour_({NEIGHBOUR, root.library()}, "/dev/null") {
    // Until then it is a child with this program's name, which would count as a change of the state.
    EXPECT_EQ(neighbour_.readLine(), "ready");
}

// Returns to the same state before each call.
bool FaultTrial::prepare() {
    if (!host_.settle()) return false;
    if (situation_.before == Situation::Before::closed) host_.leave();
    return true;
}

std::map<std::string, size_t> FaultTrial::countCalls() {
    const Quiet quiet;
    EXPECT_TRUE(prepare());
    if (situation_.before == Situation::Before::serverGone) root_.endServers(SIGKILL);
    host_.makeNextCallThrough([](const std::function<void()>& call) {
        const CallCounter counter;
        call();
    });
    (host_.*situation_.call)();
    EXPECT_EQ(host_.takeProblem(), "");
    EXPECT_EQ(host_.hasSucceeded(), situation_.succeeds);
    return countedCalls();
}

bool FaultTrial::run(const Fault& fault) {
    watch(situation_, fault);
    bool hasStruck = false;
    bool isPrepared = false;
    Resources before;
    std::string changes;
    {
        const Quiet quiet;
        isPrepared = prepare();
    }
    EXPECT_TRUE(isPrepared);
    if (isPrepared) {
        const HostState state;
        before = measure();
        hasStruck = make(fault);
        EXPECT_EQ(describeChanges(state), "");
        if (hasStruck) expectNothingLost(fault, before);
    }
    alarm(0);
    return hasStruck;
}

// Makes the call with the fault, and recovers.
bool FaultTrial::make(const Fault& fault) {
    if (situation_.before == Situation::Before::serverGone) root_.endServers(SIGKILL);
    servers_ = root_.servers();
    bool hasStruck = false;
    {
        const Quiet quiet;
        const FastClock clock(fault.stays ? kPaceOfLastingFaults : kPaceOfSingleFaults);
        host_.makeNextCallThrough([&](const std::function<void()>& call) {
            const FaultInEffect effect(fault, hasStruck);
            call();
        });
        (host_.*situation_.call)();
    }
    const bool hasSucceeded = host_.hasSucceeded();
    hasLostException_ = host_.hasLostException();
    EXPECT_EQ(host_.takeProblem(), "");
    EXPECT_TRUE(hasStruck || hasSucceeded == situation_.succeeds) << "failed without a fault";
    EXPECT_TRUE(situation_.succeeds || !hasSucceeded) << "succeeded although it could not";
    expectRecovery(situation_.before == Situation::Before::settled && !situation_.removes);
    return hasStruck;
}

void FaultTrial::expectRecovery(bool keepsObject) {
    EXPECT_EQ(findDamage(keepsObject), "");
    const std::vector<pid_t> servers = root_.servers();
    EXPECT_EQ(servers.size(), 1u);
    if (situation_.before == Situation::Before::settled) {
        EXPECT_EQ(servers, servers_) << "another server was launched";
    }
}

// Returns what does not work; "" if everything does. Ends in the state before the next trial.
std::string FaultTrial::findDamage(bool keepsObject) {
    const Quiet quiet;
    std::string damage;
    if (keepsObject && !host_.knowsObject()) damage += "the next call fails; ";
    if (!host_.settle()) damage += "the session cannot be used; ";
    host_.leave();
    if (!host_.settle()) damage += "a new session does not work; ";
    neighbour_.writeLine("go");
    if (neighbour_.readLine() != "served") damage += "another host is not served; ";
    if (!prepare()) damage += "the session cannot be used later";
    return damage;
}

FaultTrial::Resources FaultTrial::measure() const {
    const std::filesystem::directory_iterator descriptors("/proc/self/fd");
    return {heapInUse(), static_cast<size_t>(std::distance(begin(descriptors), end(descriptors)))};
}

// Some things are created only once, or are kept for the next calls. A fault that loses something loses it
// each time.
void FaultTrial::expectNothingLost(const Fault& fault, Resources before) {
    constexpr int kMostRepetitions = 5;
    const Resources first = before;
    Resources after = measure();
    bool heapGrows = after.heap > before.heap;
    bool descriptorsGrow = after.descriptors > before.descriptors;
    for (int i = 0; i < kMostRepetitions && (heapGrows || descriptorsGrow); ++i) {
        before = after;
        if (!make(fault)) return;
        after = measure();
        heapGrows = heapGrows && after.heap > before.heap;
        descriptorsGrow = descriptorsGrow && after.descriptors > before.descriptors;
    }
    EXPECT_FALSE(heapGrows && !hasLostException_)
        << "bytes are lost: " << (after.heap - first.heap) / (kMostRepetitions + 1);
    EXPECT_FALSE(descriptorsGrow) << "descriptors are lost";
}

}  // namespace dovrel::test
