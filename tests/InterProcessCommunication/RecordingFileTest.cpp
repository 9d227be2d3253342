#include "InterProcessCommunication/RecordingFile.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <memory>
#include <string>
#include <vector>

#include "InterProcessCommunication/POSTransferObj.h"
#include "InterProcessCommunication/RecordingFormat.h"
#include "platform/trace/FailureNotes.h"
#include "settings/ConfigFileSystem.h"
#include "tests/support/FileSizeLimit.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TraceLines.h"
#include "tests/support/library/Bytes.h"

namespace dovrel {
namespace {

class RecordingFileTest : public testing::Test {
  protected:
    std::string path() const { return folder_.path("recording"); }

    std::vector<Properties> sections() const {
        return ConfigFileSystem::readSections(folder_.read("recording"), recording::kSectionKey);
    }

    /// Returns an object with the bytes of the text, which are not a structured block.
    static std::unique_ptr<POSTransferObj> makeObject(const std::string& text) {
        auto object = std::make_unique<POSTransferObj>();
        object->copyBytesFrom(text.data(), static_cast<uint32_t>(text.size()));
        return object;
    }

    static void addReply(RecordingFile& file, const std::string& request, const std::string& reply) {
        file.addReply(kTime, *makeObject(request), *makeObject(reply));
    }

    // 2026-11-22T12:43:17.123456Z
    static constexpr ExchangeTime kTime{
        std::chrono::system_clock::time_point{std::chrono::microseconds{1795351397123456}},
        std::chrono::microseconds{96}};
    const test::TemporaryFolder folder_;
};

constexpr ExchangeTime RecordingFileTest::kTime;

TEST_F(RecordingFileTest, Exchange_IsASectionOfReadableTextWithAllBytes) {
    POSTransferObj request(1, 10, 13);
    request.writeUInt32(103, 65537);
    POSTransferObj reply(1, 20, 13);
    reply.writeString(150, "Gone.");
    reply.writeUInt32(151, 25);
    RecordingFile(path()).addReply(kTime, request, reply);
    const std::string process = std::to_string(getpid());
    EXPECT_EQ(folder_.read("recording"),
              "\n//EXCHANGE\nSTR:delete object\n//format\nINT:1\n"
              "//time\nSTR:2026-11-22T12:43:17.123456Z\n//process\nINT:" +
                  process +
                  "\n//microseconds\nINT:96\n"
                  "    > 103 session identifier = 65537\n"
                  "    < 150 exception text = \"Gone.\"\n"
                  "    < 151 exception code = 25\n"
                  "//request\nBAR:4173416B000100000009000000000000\n"
                  "00040100000000000001000000040A00\n"
                  "000000000003000000040D0000000000\n"
                  "00670000000401000100\n"
                  "//reply\nBAR:4173416B000100000009000000000000\n"
                  "00040100000000000001000000041400\n"
                  "000000000003000000040D0000000000\n"
                  "009600000005476F6E652E0000009700\n"
                  "00000419000000\n"
                  "//end\nINT:1\n");
}

TEST_F(RecordingFileTest, BytesOfAnyValue_AreReadBackUnchanged) {
    std::string all;
    for (int value = 0; value < 256; ++value)
        all += static_cast<char>(value);
    RecordingFile file(path());
    addReply(file, all, "");
    addReply(file, "//EXCHANGE\nSTR:forged\n", all);
    ASSERT_EQ(sections().size(), 2u);
    EXPECT_EQ(test::toText(*sections()[0].getBinary("request")), all);
    EXPECT_EQ(test::toText(*sections()[0].getBinary("reply")), "");
    EXPECT_EQ(test::toText(*sections()[1].getBinary("request")), "//EXCHANGE\nSTR:forged\n");
    EXPECT_EQ(test::toText(*sections()[1].getBinary("reply")), all);
}

TEST_F(RecordingFileTest, Failure_HasItsMessageAndTheStepThatFailedAndNoReply) {
    const FailureNotes notes;
    FailureNotes::addFailedStep(TraceArea::kExchange, [] { return std::string("attempt 1: result -1712"); });
    RecordingFile(path()).addFailure(kTime, *makeObject("a"), "Two\nlines.");
    ASSERT_EQ(sections().size(), 1u);
    EXPECT_EQ(sections()[0].getString("failure"), "Twochg-lflines.");
    EXPECT_EQ(sections()[0].getString("failedStep"), "attempt 1: result -1712");
    EXPECT_FALSE(sections()[0].contains("reply"));
}

TEST_F(RecordingFileTest, ReplyWithoutBytes_HasTheStepThatFailed) {
    const FailureNotes notes;
    FailureNotes::addFailedStep(TraceArea::kExchange, [] { return std::string("result -609"); });
    RecordingFile file(path());
    addReply(file, "a", "");
    addReply(file, "a", "b");
    EXPECT_EQ(sections().at(0).getString("failedStep"), "result -609");
    EXPECT_FALSE(sections().at(1).contains("failedStep"));
}

TEST_F(RecordingFileTest, LargeBytes_AreInTheFileOfPayloads) {
    const std::string largest(4096, 'a');
    const std::string large(4097, 'b');
    RecordingFile file(path());
    RecordingFile other(path());
    addReply(file, largest, large);
    addReply(other, large, "small");
    addReply(file, large + "c", large);
    ASSERT_EQ(sections().size(), 3u);
    EXPECT_EQ(test::toText(*sections()[0].getBinary("request")), largest);
    EXPECT_EQ(sections()[0].getString("replyPlace"), "0 4097");
    EXPECT_EQ(sections()[1].getString("requestPlace"), "4097 4097");
    EXPECT_EQ(sections()[2].getString("requestPlace"), "8194 4098");
    EXPECT_EQ(sections()[2].getString("replyPlace"), "12292 4097");
    EXPECT_EQ(folder_.read("recording.payloads"), large + large + large + "c" + large);
    EXPECT_LT(folder_.read("recording").size(), 20000u);
}

TEST_F(RecordingFileTest, BothFiles_AreForTheirOwnerOnly) {
    const mode_t oldMask = umask(0);
    {
        RecordingFile file(path());
        addReply(file, std::string(5000, 'a'), "b");
    }
    umask(oldMask);
    for (const char* name : {"recording", "recording.payloads"}) {
        struct stat status = {};
        ASSERT_EQ(stat(folder_.path(name).c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 07777u, 0600u) << name;
    }
}

TEST_F(RecordingFileTest, ExchangesOfSeveralRecorders_AreAppended) {
    folder_.write("recording", "the end of a line that another host could not complete");
    RecordingFile one(path());
    RecordingFile two(path());
    addReply(one, "1", "");
    addReply(two, "2", "");
    addReply(one, "3", "");
    ASSERT_EQ(sections().size(), 3u);
    EXPECT_EQ(test::toText(*sections()[2].getBinary("request")), "3");
}

TEST_F(RecordingFileTest, FileThatCannotBeOpened_IsNotWrittenAndReportedOnceInTheTrace) {
    ASSERT_EQ(symlink(folder_.path("other").c_str(), path().c_str()), 0);
    const Trace trace("all,file=" + folder_.path("trace"));
    RecordingFile file(path());
    addReply(file, "a", "b");
    addReply(file, "a", "b");
    EXPECT_NE(access(folder_.path("other").c_str(), F_OK), 0);
    EXPECT_EQ(
        test::splitTraceEntries(folder_.read("trace")),
        std::vector<std::string>{"exchange: the recording ends, because it cannot be written: " + path()});
}

TEST_F(RecordingFileTest, FileOfPayloadsThatCannotBeOpened_IsNamedInTheTrace) {
    ASSERT_EQ(symlink(folder_.path("other").c_str(), folder_.path("recording.payloads").c_str()), 0);
    const Trace trace("all,file=" + folder_.path("trace"));
    RecordingFile file(path());
    addReply(file, "a", std::string(5000, 'x'));
    EXPECT_EQ(test::splitTraceEntries(folder_.read("trace")),
              std::vector<std::string>{
                  "exchange: the recording ends, because it cannot be written: " + path() + ".payloads"});
}

TEST_F(RecordingFileTest, FullDisk_EndsTheRecording) {
    RecordingFile file(path());
    addReply(file, "a", "b");
    const size_t size = folder_.read("recording").size();
    {
        const test::FileSizeLimit limit(size + 10);
        addReply(file, "c", "d");
    }
    addReply(file, "e", "f");
    EXPECT_EQ(folder_.read("recording").size(), size);
}

TEST_F(RecordingFileTest, WithoutAnExchange_ThereIsNoFile) {
    { const RecordingFile file(path()); }
    EXPECT_NE(access(path().c_str(), F_OK), 0);
}

}  // namespace
}  // namespace dovrel
