#include "server/Recording.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "server/MethodResult.h"
#include "tests/support/TemporaryFolder.h"

namespace merrowd::test {
namespace {

using Problems = std::vector<std::string>;

class RecordingTest : public testing::Test {
  protected:
    Recording read(const std::string& text) {
        folder_.write("recording", text);
        problems_.clear();
        return Recording(path_, problems_);
    }

    const dovrel::test::TemporaryFolder folder_;
    const std::string path_ = folder_.path("recording");
    Problems problems_;
};

TEST_F(RecordingTest, Exchange_HasTheBytesOfRequestAndReply) {
    const Recording recording = read(
        "\n//EXCHANGE\nSTR:call method\n//format\nINT:1\n    > 107 method name = \"echo\"\n"
        "//request\nBAR:0001\n02\n//reply\nBAR:\n");
    EXPECT_EQ(problems_, Problems());
    ASSERT_EQ(recording.exchanges().size(), 1u);
    EXPECT_EQ(bytesToText(recording.read(recording.exchanges()[0].request)), std::string("\0\1\2", 3));
    EXPECT_EQ(recording.read(recording.exchanges()[0].reply).getSize(), 0u);
    EXPECT_FALSE(recording.exchanges()[0].failed);
}

TEST_F(RecordingTest, FailedExchange_NeedsNoReply) {
    const Recording recording =
        read("//EXCHANGE\nSTR:x\n//format\nINT:1\n//failure\nSTR:\n//request\nBAR:00\n");
    EXPECT_EQ(problems_, Problems());
    ASSERT_EQ(recording.exchanges().size(), 1u);
    EXPECT_TRUE(recording.exchanges()[0].failed);
}

TEST_F(RecordingTest, PayloadInItsFile_IsReadWhenItIsNeeded) {
    folder_.write("recording.payloads", "abcdef");
    const Recording recording =
        read("//EXCHANGE\nSTR:x\n//format\nINT:1\n//requestPlace\nSTR:1 3\n//replyPlace\nSTR:4 2\n");
    ASSERT_EQ(recording.exchanges().size(), 1u);
    EXPECT_EQ(bytesToText(recording.read(recording.exchanges()[0].request)), "bcd");
    EXPECT_EQ(bytesToText(recording.read(recording.exchanges()[0].reply)), "ef");
}

TEST_F(RecordingTest, ExchangeThatIsIncompleteOrOfAnotherFormat_IsLeftOutAndNamed) {
    folder_.write("recording.payloads", "abcdef");
    const std::string good = "//EXCHANGE\nSTR:x\n//format\nINT:1\n//request\nBAR:00\n//reply\nBAR:01\n";
    for (const std::string bad :
         {"//EXCHANGE\nSTR:x\n//format\nINT:2\n//request\nBAR:00\n//reply\nBAR:01\n",
          "//EXCHANGE\nSTR:x\n//request\nBAR:00\n//reply\nBAR:01\n",
          "//EXCHANGE\nSTR:x\n//format\nINT:1\n//reply\nBAR:01\n",
          "//EXCHANGE\nSTR:x\n//format\nINT:1\n//request\nBAR:00\n",
          "//EXCHANGE\nSTR:x\n//format\nINT:1\n//request\nBAR:00\n//replyPlace\nSTR:4 3\n",
          "//EXCHANGE\nSTR:x\n//format\nINT:1\n//request\nBAR:00\n//replyPlace\nSTR:nowhere\n",
          "//EXCHANGE\nSTR:x\n//format\nINT:1\n//request\nBAR:00\n//replyPlace\nSTR:18446744073709551615 "
          "2\n"}) {
        EXPECT_EQ(read(good + bad + good).exchanges().size(), 2u) << bad;
        EXPECT_EQ(problems_, Problems{path_ + ": exchange 2 is incomplete or has another format"}) << bad;
    }
}

TEST_F(RecordingTest, FileWithoutExchanges_IsAProblem) {
    EXPECT_EQ(read("some text\n").exchanges().size(), 0u);
    EXPECT_EQ(problems_, Problems{path_ + ": there is no exchange in this file"});
}

TEST_F(RecordingTest, MissingFile_IsAProblem) {
    Problems problems;
    const std::string path = folder_.path("missing");
    EXPECT_EQ(Recording(path, problems).exchanges().size(), 0u);
    EXPECT_EQ(problems, Problems{"Could not open file for reading: " + path});
}

}  // namespace
}  // namespace merrowd::test
