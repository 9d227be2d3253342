#include "tools/calls/Repetitions.h"

#include <gtest/gtest.h>

namespace dovrel::tools {
namespace {

Repetitions fourCalls() {
    Repetitions repetitions;
    repetitions.times = {40, 10, 30, 20};
    repetitions.sent = 5;
    repetitions.received = 1536;
    return repetitions;
}

TEST(Repetitions, Summary_HasTheFiguresInMicroseconds) {
    EXPECT_EQ(fourCalls().summary(),
              "4 calls in 0.000 s: 40000 calls per second\n"
              "min 10.0 us, median 25.0 us, p99 40.0 us, max 40.0 us\n"
              "each sent 5 bytes and received 1.5 KiB\n");
}

TEST(Repetitions, Json_HasTheSameFigures) {
    EXPECT_EQ(fourCalls().toJson().dump(),
              R"({"calls":4,"bytesSent":5,"bytesReceived":1536,)"
              R"("microseconds":{"total":100.0,"min":10.0,"median":25.0,"p99":40.0,"max":40.0}})");
}

}  // namespace
}  // namespace dovrel::tools
