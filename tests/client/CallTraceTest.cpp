#include "client/CallTrace.h"

#include <gtest/gtest.h>

#include <memory>
#include <regex>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/TemporaryFolder.h"
#include "tests/support/TraceLines.h"

namespace dovrel {
namespace {

/// Calls a function with an argument of each kind.
class CallTraceTest : public testing::Test {
  protected:
    uint32_t call(uint32_t result) {
        void* object = identifier_;
        void* const* noObject = nullptr;
        uint8_t bytes[] = {'a', 'b', 0, 1};
        void* command = bytes;
        return CallTrace::run(
            "posFunction",
            [&](CallTrace& call) {
                ++described_;
                call.number("application", 65537);
                call.identifierHandle("object", &object);
                call.identifierHandle("executer", noObject);
                call.text("method", "a\nb");
                call.textAtBegin("name", "host");
                call.text("none", nullptr);
                call.data("parameters", bytes, 1);
                call.data("options", nullptr, 0);
                call.handle("command", &command, 4);
                if (!call.hasSucceeded()) return;
                call.output("result", bytes, 2);
                call.outputNumber("number", 7);
                call.outputIdentifier("new object", &object);
            },
            [&] {
                ++called_;
                return result;
            });
    }

    /// Runs `operation` with a trace and returns its entries, with "THREAD" and "TIME" for the numbers.
    template <typename Operation>
    std::vector<std::string> entries(const std::string& areas, const Operation& operation) {
        {
            const Trace trace(areas + ",file=" + folder_.path("trace"));
            operation();
        }
        std::vector<std::string> entries = test::splitTraceEntries(folder_.read("trace"));
        for (std::string& entry : entries) {
            entry = std::regex_replace(entry, std::regex("thread [0-9A-F]+"), "thread THREAD");
            entry = std::regex_replace(entry, std::regex("[0-9]+ us"), "TIME us");
        }
        return entries;
    }

    test::TemporaryFolder folder_;
    char identifier_[POS_IDENTIFIER_SIZE] = "Echo";
    int described_ = 0;
    int called_ = 0;
};

constexpr char kArguments[] =
    "calls: posFunction, application 65537, parameters 1 byte, options 0 bytes, command 4 bytes, thread "
    "THREAD: ";

TEST_F(CallTraceTest, WithoutATrace_TheFunctionIsCalledAndNothingIsDescribed) {
    EXPECT_EQ(call(5), 5u);
    EXPECT_EQ(called_, 1);
    EXPECT_EQ(described_, 0);
}

TEST_F(CallTraceTest, OtherAreasOnly_NothingIsDescribed) {
    EXPECT_TRUE(entries("exchange,calls:0", [this] { EXPECT_EQ(call(POS_OK), POS_OK); }).empty());
    EXPECT_EQ(described_, 0);
}

TEST_F(CallTraceTest, Success_HasTwoEntriesWithSizesAndWithoutContents) {
    EXPECT_EQ(
        entries("calls", [this] { EXPECT_EQ(call(POS_OK), POS_OK); }),
        (std::vector<std::string>{std::string(kArguments) + "called",
                                  std::string(kArguments) + "POS_OK, result 2 bytes, number 7, TIME us"}));
    EXPECT_EQ(called_, 1);
}

TEST_F(CallTraceTest, Failure_HasNoOutputs) {
    EXPECT_EQ(entries("calls:3", [this] { EXPECT_EQ(call(POS_FAILURE), POS_FAILURE); }),
              (std::vector<std::string>{std::string(kArguments) + "called\n    > name = \"host\"",
                                        std::string(kArguments) + "POS_FAILURE, TIME us"}));
}

TEST_F(CallTraceTest, FailuresOnly_ASuccessHasNoEntryAndAFailureHasOne) {
    EXPECT_EQ(entries("calls:1",
                      [this] {
                          call(POS_OK);
                          call(POS_FAILURE);
                      }),
              (std::vector<std::string>{std::string(kArguments) + "POS_FAILURE, TIME us"}));
}

TEST_F(CallTraceTest, Level3_ShowsContentsAfterSuccess) {
    const std::string object =
        "16 bytes: 45 63 68 6F 00 00 00 00 00 00 00 00 00 00 00 00 \"Echo............\"";
    const std::vector<std::string> both = entries("calls:3", [this] { call(POS_OK); });
    ASSERT_EQ(both.size(), 2u);
    EXPECT_EQ(both[0], std::string(kArguments) + "called\n    > name = \"host\"");
    EXPECT_EQ(both[1],
              std::string(kArguments) + "POS_OK, result 2 bytes, number 7, TIME us\n    > object = " +
                  object + "\n    > method = \"a\\nb\"\n    > parameters = 1 byte: 61 \"a\"" +
                  "\n    > command = 4 bytes: 61 62 00 01 \"ab..\"\n    < result = 2 bytes: 61 62 \"ab\"" +
                  "\n    < new object = " + object);
}

// A host may pass the same variable as input and as output. After success it points to the output, which may
// be shorter than the input was.
TEST_F(CallTraceTest, InputThatIsAlsoAnOutput_HasNoContent) {
    const auto result = std::make_unique<uint8_t[]>(1);
    char input[] = "input";
    void* variable = input;
    const auto describe = [&](CallTrace& call) {
        call.identifierHandle("object", &variable);
        call.handle("command", &variable, 5);
        if (call.hasSucceeded()) call.output("result", variable, 1);
    };
    const auto function = [&]() -> uint32_t {
        variable = result.get();
        return POS_OK;
    };
    EXPECT_EQ(entries("calls:3", [&] { CallTrace::run("posFunction", describe, function, &variable); }).at(1),
              "calls: posFunction, command 5 bytes, thread THREAD: POS_OK, result 1 byte, TIME us"
              "\n    < result = 1 byte: 00");
}

TEST_F(CallTraceTest, Thread_IsTheSameForCallsOfOneThreadOnly) {
    {
        const Trace trace("calls,file=" + folder_.path("trace"));
        call(POS_OK);
        std::thread([this] { call(POS_OK); }).join();
    }
    std::vector<std::string> threads;
    for (const std::string& entry : test::splitTraceEntries(folder_.read("trace"))) {
        std::smatch found;
        ASSERT_TRUE(std::regex_search(entry, found, std::regex("thread ([0-9A-F]+):"))) << entry;
        threads.push_back(found[1]);
    }
    ASSERT_EQ(threads.size(), 4u);
    EXPECT_EQ(threads[0], threads[1]);
    EXPECT_EQ(threads[2], threads[3]);
    EXPECT_NE(threads[0], threads[2]);
}

TEST_F(CallTraceTest, Result_OfASessionThatHasJustBegun_IsOneEntry) {
    const TraceTimer timer;
    EXPECT_EQ(entries("calls", [&timer] { CallTrace::writeResult("InitializePOS", timer); }),
              (std::vector<std::string>{"calls: InitializePOS, thread THREAD: POS_OK, TIME us"}));
}

}  // namespace
}  // namespace dovrel
