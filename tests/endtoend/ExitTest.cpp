// Calls in an exit handler that the host registered before it loaded the library. Everything that the library
// needs, including the texts of its failures, must still exist then.
#include <signal.h>

#include <filesystem>
#include <memory>

#include "tests/endtoend/EndToEnd.h"
#include "tests/support/ChildProcess.h"

namespace dovrel::test {
namespace {

class Exit : public testing::Test {
  protected:
    /// Starts the host and waits until it has registered an application.
    void start(const std::vector<std::string>& arguments = {}) {
        std::vector<std::string> command = {EXIT_HOST, root_.library()};
        command.insert(command.end(), arguments.begin(), arguments.end());
        host_ = std::make_unique<ChildProcess>(command, logFile_);
        ASSERT_EQ(host_->readLine(), "ready") << systemLog();
    }

    /// Lets the host exit and returns the line of its exit handler. The
    /// library's console lines come before it.
    std::string leave() {
        std::filesystem::resize_file(logFile_, 0);
        host_->writeLine("leave");
        std::string line = host_->readLine();
        while (!line.empty() && line.rfind("command", 0) != 0)
            line = host_->readLine();
        return line;
    }

    std::string systemLog() const { return readFile(logFile_); }

    /// Expects that each of the failures was reported once, in the user's language.
    void expectReports(const std::vector<std::pair<std::string, std::string>>& messagesAndExplanations) {
        const std::string log = systemLog();
        EXPECT_EQ(countOccurrences(log, "No Error dialogue shown"), messagesAndExplanations.size()) << log;
        for (const auto& [message, explanation] : messagesAndExplanations) {
            const std::string body = texts_.failureBody("Leaving host", message, explanation);
            EXPECT_EQ(countOccurrences(log, ShippedTexts::unshownAlert(body)), 1u) << body << "\nin\n" << log;
        }
    }

    TestRoot root_;
    const ShippedTexts texts_{SHIPPED_TEXTS};
    const std::string logFile_ = root_.path() + "/host.log";
    std::unique_ptr<ChildProcess> host_;
};

constexpr char kUnrecoverable[] = "DLL_ERROR_UNRECOVERABLE_ERROR";

TEST_F(Exit, TerminateInAnExitHandler_WithTheServer_UnregistersTheApplication) {
    start();
    EXPECT_EQ(leave(), "command 0, method 80000008, end 0");
    EXPECT_EQ(host_->wait(), 0) << systemLog();
    EXPECT_EQ(ServerControl::status().at("applications"), 0);
    expectReports({{texts_.text("DLL_POS_ACCESS_CLIENT_EXCEPTION_CPP_A_NULL_POINTER_HAS_BEEN_PASSED"),
                    kUnrecoverable}});
}

TEST_F(Exit, TerminateInAnExitHandler_WithoutAServer_ReportsItsFailuresAndEnds) {
    start();
    root_.removeServer();
    root_.endServers(SIGKILL);
    EXPECT_EQ(leave(), "command 80000008, method 80000008, end 0");
    EXPECT_EQ(host_->wait(), 0) << systemLog();
    expectReports({{texts_.text("DLL_MSG_MERROWD_IS_MISSING_MACOSX"), kUnrecoverable},
                   {texts_.text("DLL_POS_ACCESS_CLIENT_EXCEPTION_CPP_A_NULL_POINTER_HAS_BEEN_PASSED"),
                    kUnrecoverable}});
}

TEST_F(Exit, CallInAnExitHandlerAfterAFailureInMain_IsReportedTheSame) {
    start({"fails"});
    EXPECT_EQ(leave(), "command 0, method 80000008, end 0");
    EXPECT_EQ(host_->wait(), 0) << systemLog();
    expectReports({{texts_.text("DLL_POS_ACCESS_CLIENT_EXCEPTION_CPP_A_NULL_POINTER_HAS_BEEN_PASSED"),
                    kUnrecoverable}});
}

}  // namespace
}  // namespace dovrel::test
