// The content of the error log.
#include "client/exceptions/StructuredDataExceptions.h"
#include "platform/SystemException.h"
#include "settings/LogFileReader.h"
#include "tests/client/ErrorLogFixture.h"

namespace dovrel {
namespace {

class ErrorLogEntryTest : public test::ErrorLogFixture {
  protected:
    /// Returns the version that a new log names after the error log has used the bundle.
    std::string versionIn(const std::string& bundle) {
        unlink(logPath().c_str());
        log_.useBundle(bundle);
        append("Editor", "no driver");
        const std::string key = "//VERSION\nSTR:";
        const std::string log = content();
        const size_t start = log.find(key) + key.size();
        return log.substr(start, log.find('\n', start) - start);
    }
};

TEST_F(ErrorLogEntryTest, FirstFailure_BringsTitleVersionAndEncoding) {
    append("Editor", "no driver");
    EXPECT_EQ(content(), std::string(kHead) + kEntry);
}

TEST_F(ErrorLogEntryTest, Version_IsThatOfTheInstalledBundle) {
    const std::string bundle = "/Library/Application Support/Tessilor/pos/Dovrel.bundle";
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"<key>CFBundleVersion</key><string>3.14.15</string>", "Dovrel Version 3.14.15"},
        {"<key>CFBundleVersion</key><integer>3</integer>", "Dovrel Version 3"},
        {"<key>CFBundleName</key><string>Dovrel</string>", "Dovrel Version n/a"},
    };
    for (const auto& [entries, version] : cases) {
        root_.write(bundle.substr(1) + "/Contents/Info.plist",
                    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
                    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
                    "<plist version=\"1.0\"><dict>" +
                        entries + "</dict></plist>\n");
        EXPECT_EQ(versionIn(bundle), version);
    }
}

TEST_F(ErrorLogEntryTest, Version_OfAMissingBundle_IsNotAvailable) {
    EXPECT_EQ(versionIn("/Library/Application Support/Tessilor/pos/Nothing.bundle"), "Dovrel Version n/a");
    EXPECT_EQ(versionIn(""), "Dovrel Version n/a");
}

TEST_F(ErrorLogEntryTest, Entries_ReadBackAsSections) {
    append("Editor", "first line\nsecond line");
    append("Viewer", "other");
    const auto sections = ConfigFileSystem::readSections(content(), "TIME");
    ASSERT_EQ(sections.size(), 3u);
    EXPECT_EQ(sections[0].getString("VERSION"), "Dovrel Version n/a");
    EXPECT_EQ(sections[1].getString("APPLICATION"), "Editor");
    EXPECT_EQ(sections[1].getString("MESSAGE"), "first linechg-lfsecond line");
    EXPECT_EQ(sections[1].getInt("TYPE"), 24);
    EXPECT_EQ(sections[2].getString("APPLICATION"), "Viewer");
}

TEST_F(ErrorLogEntryTest, Head_CanBeReadAfterItsTitle) {
    append("Editor", "no driver");
    std::string text = content();
    Properties store;
    LogFileReader::load(text, "POSDLLErrorLog", store, false);
    EXPECT_EQ(store.getString("VERSION"), "Dovrel Version n/a");
    EXPECT_NE(store.getString("ENCODING").find("UTF-8 or Mac Roman"), std::string::npos);
    EXPECT_EQ(LogFileReader::getText(store, "MESSAGE"), "no driver");
}

TEST_F(ErrorLogEntryTest, BytesOfHostsAndServers_StayAsTheyAre) {
    std::string bytes;
    for (int byte = 1; byte < 256; ++byte)
        if (byte != '\n') bytes += static_cast<char>(byte);
    append(bytes.c_str(), bytes.c_str());
    EXPECT_NE(content().find("//APPLICATION\nSTR:" + bytes + "\n"), std::string::npos);
    EXPECT_NE(content().find("//MESSAGE\nSTR:" + bytes + "\n"), std::string::npos);
}

TEST_F(ErrorLogEntryTest, ErrorSiteCode_IsTheDetail) {
    auto failure = std::make_unique<StructuredWriteFailedException>("1");
    failure->setDetail("384269E80230: ");
    append(FailureReport(std::move(failure), "Editor"));
    EXPECT_EQ(content().substr(content().find("//TYPE\n")),
              "//TYPE\nINT:5\n//TYPENAME\nSTR:data that do not fit into a block\n//MESSAGE\nSTR:1\n"
              "//DETAIL\nSTR:384269E80230: \n");
}

TEST_F(ErrorLogEntryTest, StatusOfTheSystem_HasItsName) {
    append(FailureReport(std::make_unique<SystemException>("runInBackground", -29296), "Editor"));
    EXPECT_EQ(failures().at(0).getString("DETAIL"), "runInBackground");
    EXPECT_EQ(failures().at(0).getString("STATUS"), "-29296 (kMPTimeoutErr)");
}

TEST_F(ErrorLogEntryTest, Notes_AreFurtherEntries) {
    FailureNotes::addRequest([] { return std::string("call method"); });
    FailureNotes::addServerError(27, "not used");
    FailureNotes::addFailedStep(TraceArea::kConnection, [] { return std::string("launch: -10826"); });
    append("Editor", "no driver");
    EXPECT_EQ(content(), std::string(kHead) + kEntry +
                             "//REQUEST\nSTR:call method\n//SERVERERROR\nSTR:27 (method not found)\n"
                             "//FAILEDSTEP\nSTR:launch: -10826\n");
}

TEST_F(ErrorLogEntryTest, FailureWithoutAnAlert_SaysSo) {
    FailureReport report(std::make_unique<POSClassNotFoundException>("no driver"), "Editor");
    report.isShown = false;
    append(report);
    EXPECT_EQ(content(), std::string(kHead) + kEntry + "//ALERT\nSTR:none\n");
}

TEST_F(ErrorLogEntryTest, LineFeedsOfEveryText_ForgeNoEntry) {
    FailureNotes::addRequest([] { return std::string("a\n//TYPE\nINT:1"); });
    FailureNotes::addFailedStep(TraceArea::kConnection, [] { return std::string("b\n//TIME\nSTR:1"); });
    auto failure = std::make_unique<POSClassNotFoundException>("c\n//TIME\nSTR:2");
    failure->setDetail("d\n//TIME\nSTR:3");
    append(FailureReport(std::move(failure), "Editor"), "e\n//TIME\nSTR:4");
    EXPECT_EQ(failures().size(), 1u);
    EXPECT_EQ(failures().at(0).getInt("TYPE"), 24);
}

TEST_F(ErrorLogEntryTest, LongTexts_AreCut) {
    append(std::string(100000, 'a').c_str(), std::string(100000, 'm').c_str());
    const auto sections = ConfigFileSystem::readSections(content(), "TIME");
    ASSERT_EQ(sections.size(), 2u);
    EXPECT_EQ(sections[1].getString("APPLICATION"), std::string(16384, 'a'));
    EXPECT_EQ(sections[1].getString("MESSAGE"), std::string(16384, 'm'));
}

TEST_F(ErrorLogEntryTest, LongDetailsAndNotes_AreCut) {
    FailureNotes::addRequest([] { return std::string(100000, 'r'); });
    FailureNotes::addFailedStep(TraceArea::kConnection, [] { return std::string(100000, 's'); });
    auto failure = std::make_unique<POSClassNotFoundException>("no driver");
    failure->setDetail(std::string(100000, 'd').c_str());
    append(FailureReport(std::move(failure), "Editor"));
    EXPECT_EQ(failures().at(0).getString("DETAIL"), std::string(16384, 'd'));
    EXPECT_EQ(failures().at(0).getString("REQUEST"), std::string(16384, 'r'));
    EXPECT_EQ(failures().at(0).getString("FAILEDSTEP"), std::string(16384, 's'));
}

}  // namespace
}  // namespace dovrel
