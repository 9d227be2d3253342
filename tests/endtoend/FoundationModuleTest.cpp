// Foundation comes into a host's process when an alert is shown, and not before. If its module cannot be loaded,
// alerts go to the system log.
#include <filesystem>
#include <fstream>

#include "tests/endtoend/EndToEnd.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/FakeAlertHelper.h"

namespace dovrel::test {
namespace {

namespace fs = std::filesystem;

// Within the part of the module that is loaded, whatever comes after it for debuggers.
constexpr uintmax_t kCutSize = 100'000;

class FoundationModule : public testing::Test {
  protected:
    FoundationModule() { setenv("DISPLAY", ":1", 1); }

    ~FoundationModule() override {
        if (HasFailure()) std::cerr << "The host's system log:\n" << systemLog() << std::endl;
    }

    /// Starts a host and lets it register an application.
    void startRegistered() {
        host_ = std::make_unique<ChildProcess>(std::vector<std::string>{STEP_HOST, root_.library()},
                                               root_.path() + "/system.log");
        for (const char* step : {"load", "open", "register"})
            EXPECT_EQ(line(step), "0 Dovrel");
    }

    /// Returns the host's next line after the step, without the lines that the library itself writes.
    std::string line(const std::string& step) {
        host_->writeLine(step);
        std::string line = host_->readLine();
        while (!line.empty() && line.find(" Dovrel") == std::string::npos)
            line = host_->readLine();
        return line;
    }

    void expectLoggedAlertsWithoutFoundation() {
        startRegistered();
        EXPECT_EQ(line("fail"), "80000008 Dovrel");
        EXPECT_EQ(line("fail"), "80000008 Dovrel");
        EXPECT_EQ(line("call"), "0 Dovrel");
        EXPECT_EQ(line("close"), "0 Dovrel");
        EXPECT_EQ(countOccurrences(systemLog(), "No Error dialogue shown"), 2u);
    }

    /// Makes the alerts' helper answer with the first button.
    void useFakeHelper() const {
        const std::string helper = folder() + "/dovrel-alert";
        fs::remove(helper);
        fs::create_symlink(FAKE_ALERT_HELPER, helper);
        fake_.follow({kShownEvent, pressedEvent(0)});
    }

    std::string folder() const { return root_.library() + "/Contents/MacOS"; }
    std::string module() const { return folder() + "/DovrelFoundation"; }
    std::string systemLog() const { return readFile(root_.path() + "/system.log"); }

    TestRoot root_;
    FakeAlertHelper fake_;
    std::unique_ptr<ChildProcess> host_;
};

TEST_F(FoundationModule, HostWhoseCallsSucceed_HasOnlyTheFirstModule) {
    startRegistered();
    EXPECT_EQ(line("call"), "0 Dovrel");
    EXPECT_EQ(line("close"), "0 Dovrel");
    EXPECT_EQ(systemLog(), "");
}

TEST_F(FoundationModule, HostThatShowsAnAlert_HasFoundationFromThenOn) {
    useFakeHelper();
    startRegistered();
    const std::string shown = line("fail");
    for (const char* name : {"80000008 Dovrel ", " DovrelFoundation ", " libobjc.so", " libgnustep-base.so"})
        EXPECT_NE(shown.find(name), std::string::npos) << name << " in " << shown;
    EXPECT_NE(fake_.note("request"), "");
    EXPECT_EQ(line("close"), "0" + shown.substr(shown.find(' ')));
    EXPECT_EQ(systemLog(), "");
}

TEST_F(FoundationModule, FirstNeededInAnExitHandler_ShowsTheAlert) {
    useFakeHelper();
    startRegistered();
    EXPECT_NE(line("leave").find("80000008 Dovrel DovrelFoundation "), std::string::npos);
    EXPECT_EQ(host_->wait(), 0);
    EXPECT_NE(fake_.note("request"), "");
    EXPECT_EQ(systemLog(), "");
}

TEST_F(FoundationModule, NeededAgainInAnExitHandler_ShowsTheAlert) {
    useFakeHelper();
    startRegistered();
    const std::string shown = line("fail");
    useFakeHelper();  // without the notes of the first alert
    EXPECT_EQ(line("leave"), shown);
    EXPECT_EQ(host_->wait(), 0);
    EXPECT_NE(fake_.note("request"), "");
    EXPECT_EQ(systemLog(), "");
}

TEST_F(FoundationModule, AlertOnASystemWithoutADisplay_IsLoggedWithoutFoundation) {
    unsetenv("DISPLAY");
    expectLoggedAlertsWithoutFoundation();
}

TEST_F(FoundationModule, ThatIsMissing_IsAnAlertThatIsNotShown) {
    EXPECT_TRUE(fs::remove(module()));
    expectLoggedAlertsWithoutFoundation();
    EXPECT_EQ(countOccurrences(systemLog(), "Dovrel cannot use Foundation. " + module()), 2u);
}

TEST_F(FoundationModule, ThatIsCutShort_IsAnAlertThatIsNotShown) {
    fs::copy(module(), folder() + "/copy");
    fs::rename(folder() + "/copy", module());  // not the built file itself
    fs::resize_file(module(), kCutSize);
    expectLoggedAlertsWithoutFoundation();
}

TEST_F(FoundationModule, ThatIsMissingAndComesBack_IsUsedByTheNextAlert) {
    useFakeHelper();
    fs::rename(module(), folder() + "/kept");
    startRegistered();
    EXPECT_EQ(line("fail"), "80000008 Dovrel");
    fs::rename(folder() + "/kept", module());
    EXPECT_NE(line("fail").find(" DovrelFoundation "), std::string::npos);
    EXPECT_EQ(countOccurrences(systemLog(), "No Error dialogue shown"), 1u);
}

// Sanitizers end a process that has no memory.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
TEST_F(FoundationModule, HostWithoutMemoryForIt_GoesOnWithoutAnAlert) {
    startRegistered();
    EXPECT_EQ(line("limit"), "0 Dovrel");
    EXPECT_EQ(line("fail"), "80000008 Dovrel");
    EXPECT_EQ(line("call"), "0 Dovrel");
    EXPECT_EQ(countOccurrences(systemLog(), "No Error dialogue shown"), 1u);
}
#endif

}  // namespace
}  // namespace dovrel::test
