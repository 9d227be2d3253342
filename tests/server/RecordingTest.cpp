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
        "//request\nBAR:0001\n02\n//reply\nBAR:\n//end\nINT:1\n");
    EXPECT_EQ(problems_, Problems());
    ASSERT_EQ(recording.exchanges().size(), 1u);
    EXPECT_EQ(bytesToText(recording.read(recording.exchanges()[0].request)), std::string("\0\1\2", 3));
    EXPECT_EQ(recording.read(recording.exchanges()[0].reply).getSize(), 0u);
    EXPECT_FALSE(recording.exchanges()[0].failed);
}

TEST_F(RecordingTest, FailedExchange_NeedsNoReply) {
    const Recording recording =
        read("//EXCHANGE\nSTR:x\n//format\nINT:1\n//failure\nSTR:\n//request\nBAR:00\n//end\nINT:1\n");
    EXPECT_EQ(problems_, Problems());
    ASSERT_EQ(recording.exchanges().size(), 1u);
    EXPECT_TRUE(recording.exchanges()[0].failed);
}

TEST_F(RecordingTest, PayloadInItsFile_IsReadWhenItIsNeeded) {
    folder_.write("recording.payloads", "abcdef");
    const Recording recording = read(
        "//EXCHANGE\nSTR:x\n//format\nINT:1\n//requestPlace\nSTR:1 3\n//replyPlace\nSTR:4 2\n//end\nINT:1\n");
    ASSERT_EQ(recording.exchanges().size(), 1u);
    EXPECT_EQ(bytesToText(recording.read(recording.exchanges()[0].request)), "bcd");
    EXPECT_EQ(bytesToText(recording.read(recording.exchanges()[0].reply)), "ef");
}

TEST_F(RecordingTest, ExchangeThatIsIncompleteOrOfAnotherFormat_IsLeftOutAndNamed) {
    folder_.write("recording.payloads", "abcdef");
    const std::string good =
        "//EXCHANGE\nSTR:x\n//format\nINT:1\n//request\nBAR:00\n//reply\nBAR:01\n//end\nINT:1\n";
    for (const std::string bad :
         {"//EXCHANGE\nSTR:x\n//format\nINT:1\n//request\nBAR:00\n//reply\nBAR:01\n",
          "//EXCHANGE\nSTR:x\n//format\nINT:1\n//request\nBAR:00\n//reply\nBAR:01\n//end\nINT:\n",
          "//EXCHANGE\nSTR:x\n//format\nINT:2\n//request\nBAR:00\n//reply\nBAR:01\n//end\nINT:1\n",
          "//EXCHANGE\nSTR:x\n//request\nBAR:00\n//reply\nBAR:01\n//end\nINT:1\n",
          "//EXCHANGE\nSTR:x\n//format\nINT:1\n//reply\nBAR:01\n//end\nINT:1\n",
          "//EXCHANGE\nSTR:x\n//format\nINT:1\n//request\nBAR:00\n//end\nINT:1\n"}) {
        EXPECT_EQ(read(good + bad + good).exchanges().size(), 2u) << bad;
        EXPECT_EQ(problems_, Problems{path_ + ": exchange 2 is incomplete or has another format"}) << bad;
    }
}

TEST_F(RecordingTest, PlaceThatIsNotInTheFileOfPayloads_MakesTheExchangeIncomplete) {
    folder_.write("recording.payloads", "abcdef");
    const std::string begin = "//EXCHANGE\nSTR:x\n//format\nINT:1\n//request\nBAR:00\n//replyPlace\nSTR:";
    const std::string end = "\n//end\nINT:1\n";
    EXPECT_EQ(read(begin + "4 2" + end).exchanges().size(), 1u);
    for (const std::string place :
         {"4 3", "7 1", "4 0", "nowhere", "", "4", "4 ", "18446744073709551615 2", "18446744073709551620 2",
          "4 4294967298", "-1 2", "4 -4294967294", "+4 2", "4 2 1", "4 2x", "0x4 2"}) {
        EXPECT_EQ(read(begin + place + end).exchanges().size(), 0u) << place;
        EXPECT_EQ(problems_, Problems{path_ + ": exchange 1 is incomplete or has another format"}) << place;
    }
}

TEST_F(RecordingTest, ExchangeThatAFullDiskCutAnywhere_IsLeftOut) {
    const std::string whole =
        "\n//EXCHANGE\nSTR:x\n//format\nINT:1\n//request\nBAR:00\n//reply\nBAR:01020304\n//end\nINT:1\n";
    const std::string next =
        "\n//EXCHANGE\nSTR:x\n//format\nINT:1\n//request\nBAR:05\n//reply\nBAR:06\n//end\nINT:1\n";
    // Without its last line feed an exchange has everything.
    for (size_t size = 0; size + 1 < whole.size(); ++size) {
        const Recording recording = read(whole.substr(0, size) + next);
        ASSERT_EQ(recording.exchanges().size(), 1u) << size;
        EXPECT_EQ(bytesToText(recording.read(recording.exchanges()[0].reply)), "\x06") << size;
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
