// Compares docs/recordings.md with what the library writes and the server replays.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <set>

#include "InterProcessCommunication/RecordingFormat.h"
#include "InterProcessCommunication/TransferObjText.h"
#include "server/ControlCalls.h"
#include "server/Recording.h"
#include "tests/server/FakeProcess.h"
#include "tests/server/RecordedHost.h"
#include "tests/support/DocumentPage.h"
#include "tests/support/TemporaryFolder.h"

namespace merrowd::test {
namespace {

namespace format = dovrel::recording;
using dovrel::test::DocumentPage;

class RecordingsPage : public testing::Test {
  protected:
    /// Returns the example of the page.
    std::string example() const {
        constexpr char kBegin[] = "```recording\n";
        const size_t begin = text_.find(kBegin) + sizeof kBegin - 1;
        return text_.substr(begin, text_.find("```", begin) - begin);
    }

    /// Returns the text without the line of the process and without the time.
    static std::string withoutProcess(std::string text) {
        for (const std::string key : {"//process\nINT:", "//time\nSTR:", "//microseconds\nINT:"}) {
            const size_t begin = text.find(key) + key.size();
            text.erase(begin, text.find('\n', begin) - begin);
        }
        return text;
    }

    static std::string readPage() {
        std::ifstream file(RECORDINGS_PAGE, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    const DocumentPage page_{RECORDINGS_PAGE};
    const std::string text_ = readPage();
    const dovrel::test::TemporaryFolder folder_;
};

TEST_F(RecordingsPage, TheExample_IsWhatTheLibraryWritesForItsBytes) {
    folder_.write("example", example());
    std::vector<std::string> problems;
    const Recording recording(folder_.path("example"), problems);
    EXPECT_EQ(problems, std::vector<std::string>());
    ASSERT_EQ(recording.exchanges().size(), 1u);
    const RecordedExchange& exchange = recording.exchanges()[0];
    dovrel::POSTransferObj request;
    dovrel::POSTransferObj reply;
    request.copyBytesFrom(recording.read(exchange.request));
    reply.copyBytesFrom(recording.read(exchange.reply));
    dovrel::RecordingFile(folder_.path("written")).addReply({}, request, reply);
    EXPECT_EQ("\n" + withoutProcess(example()), withoutProcess(folder_.read("written")));
}

TEST_F(RecordingsPage, TheTableOfKeys_IsComplete) {
    const std::set<std::string> keys{format::kSectionKey,      format::kFormatKey,       format::kTimeKey,
                                     format::kProcessKey,      format::kMicrosecondsKey, format::kFailureKey,
                                     format::kFailedStepKey,   format::kRequestKey,      format::kReplyKey,
                                     format::kRequestPlaceKey, format::kReplyPlaceKey,   format::kEndKey};
    std::set<std::string> onPage;
    for (const DocumentPage::Row& row : page_.rowsUnder({"key", "value"}))
        onPage.insert(row[0]);
    EXPECT_EQ(onPage, keys);
    EXPECT_TRUE(page_.says("The file of payloads has the recording's name with `.payloads` at its end."));
    EXPECT_EQ(format::payloadPath("x"), "x.payloads");
    EXPECT_NE(text_.find("more than " + std::to_string(format::kMostBytesInText) + " bytes"),
              std::string::npos);
}

TEST_F(RecordingsPage, TheTableOfReplayModes_HasTheValuesOfTheSetting) {
    FakeProcess process;
    ServerState state(1);
    ExchangeLog log("/dev/null");
    ControlCalls control(state, process, log);
    std::string names;
    for (const DocumentPage::Row& row : page_.rowsUnder({"replayMode", "which request gets which reply"}))
        names += (names.empty() ? "" : ", ") + row[0];
    const std::string reply = bytesToText(control.handle("//replayMode\nSTR:x\n").parameter->bytes());
    EXPECT_NE(reply.find("expected one of " + names + "\n"), std::string::npos) << reply;
}

TEST_F(RecordingsPage, TheLineOfTheLog_IsThatOfARequestThatTheRecordingDoesNotHave) {
    RecordedHost host(folder_.path("recording"));
    host.registerApplication();
    std::vector<std::string> problems;
    std::string note;
    ApplicationTable applications(1);
    Replay replay(Recording(folder_.path("recording"), problems), ReplayMode::byRequest, applications,
                  [&note](const std::string& text) { note = text; });
    replay.handle(callRequest(1, std::string(16, 'x'), "echo").bytes(), 0);
    EXPECT_NE(text_.find("    2026-11-22 12:43:17.123 " + note + "\n"), std::string::npos) << note;
}

}  // namespace
}  // namespace merrowd::test
