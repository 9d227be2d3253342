// Many calls, many threads and large data. Nothing may be left over.
#include <malloc.h>

#include <filesystem>
#include <thread>

#include "tests/endtoend/EndToEnd.h"

namespace dovrel::test {
namespace {

class Load : public InSession {};

std::vector<std::string> filesBelow(const std::string& folder) {
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
        files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

// Returns the child processes of this process, including ended ones that nobody has waited for.
std::string children() {
    return contentOf("/proc/self/task/" + std::to_string(getpid()) + "/children");
}

class Calls {
  public:
    Calls(Host& host, uint32_t application) : host_(host), application_(application) {}

    // Each thread has its own object and checks each reply to make sure that it belongs to its call.
    void runOnThreads(int threads, int callsEach) {
        std::vector<std::thread> running;
        for (int thread = 0; thread < threads; ++thread) {
            running.emplace_back([this, thread, callsEach] { run(thread, callsEach); });
        }
        for (std::thread& thread : running)
            thread.join();
    }

  private:
    void run(int thread, int calls) {
        ObjectId echo = host_.instantiate(application_, "Echo");
        int wrong = 0;
        for (int call = 0; call < calls; ++call) {
            const std::string argument = std::to_string(thread) + ":" + std::to_string(call) +
                                         std::string(static_cast<size_t>(call % 5000), '.');
            const Answered answered = host_.call(application_, echo, "echo", argument);
            if (answered.status != POS_OK || answered.bytes != argument) ++wrong;
        }
        EXPECT_EQ(wrong, 0);
        EXPECT_EQ(host_.library().posDeleteObject(application_, echo.handle()), POS_OK);
    }

    Host& host_;
    const uint32_t application_;
};

TEST_F(Load, TenThousandCallsOfEightThreads_GetTheirOwnRepliesAndLeaveNothingBehind) {
    mallopt(M_ARENA_MAX, 1);  // mallinfo2 below counts only one arena
    Calls calls(host_, host_.registered({"Echo"}));
    calls.runOnThreads(8, 25);  // creates everything that is created only once

    const std::vector<std::string> descriptors = openDescriptors();
    const std::vector<std::string> files = filesBelow(root_.path());
    const std::string processes = children();
    const std::vector<pid_t> servers = root_.servers();
    const size_t bytes = mallinfo2().uordblks;
    calls.runOnThreads(8, 1250);
    const size_t bytesAfter = mallinfo2().uordblks;

    EXPECT_EQ(openDescriptors(), descriptors);
    EXPECT_EQ(filesBelow(root_.path()), files);
    EXPECT_EQ(children(), processes);
    EXPECT_EQ(root_.servers(), servers);
    EXPECT_EQ(ServerControl::status().at("objects"), 0);
    // The limit is one byte per call. A call that keeps memory keeps at least 16 bytes, malloc's smallest block.
    // The count also includes freed blocks in malloc's cache for this thread, at most seven of each size. When
    // the C library frees an ended thread's table of thread-local data (about 400 bytes), the table goes into
    // this cache. How many are already there after the first round depends on the load of the machine.
    EXPECT_LT(bytesAfter, bytes + 10'000);
}

TEST_F(Load, AnArgumentAndAnAnswerOf64MiB_ArriveWhole) {
    const uint32_t application = host_.registered({"Echo"});
    ObjectId echo = host_.instantiate(application, "Echo");
    std::string argument(size_t{64} << 20, '\0');
    uint32_t word = 1;
    for (char& byte : argument) {
        word = word * 1664525 + 1013904223;
        byte = static_cast<char>(word >> 24);
    }
    const Answered answered = host_.call(application, echo, "echo", argument);
    EXPECT_EQ(answered.status, POS_OK);
    EXPECT_TRUE(answered.bytes == argument);
}

TEST_F(Load, EverySizeAroundTheBoundsOfFrames_ArrivesWhole) {
    const uint32_t application = host_.registered({"Echo"});
    ObjectId echo = host_.instantiate(application, "Echo");
    for (size_t power = 1; power <= size_t{1} << 20; power *= 2) {
        for (const size_t size : {power - 1, power, power + 1}) {
            const std::string argument(size, static_cast<char>('a' + size % 26));
            const Answered answered = host_.call(application, echo, "echo", argument);
            ASSERT_EQ(answered.status, POS_OK) << size;
            ASSERT_TRUE(answered.bytes == argument) << size;
        }
    }
}

TEST_F(Load, AThousandObjects_AreMadeUsedAndDeleted) {
    const uint32_t application = host_.registered({"Counter"});
    std::vector<ObjectId> counters;
    for (uint32_t i = 0; i < 1000; ++i)
        counters.push_back(host_.instantiate(application, "Counter"));
    for (uint32_t i = 0; i < 1000; ++i)
        host_.call(application, counters[i], "add", littleEndian(i));
    for (uint32_t i = 0; i < 1000; ++i) {
        ASSERT_EQ(host_.call(application, counters[i], "value").bytes, littleEndian(i));
        ASSERT_EQ(library_.posDeleteObject(application, counters[i].handle()), POS_OK);
    }
    EXPECT_EQ(ServerControl::status().at("objects"), 0);
}

}  // namespace
}  // namespace dovrel::test
