// Launching applications: what the new process inherits, how often it starts,
// and what a failed launch returns.
#include <CoreServices/CoreServices.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "portability/processes/ProcessTable.h"
#include "portability/transport/Endpoint.h"
#include "tests/portability/processes/ProbeReport.h"
#include "tests/portability/support/Held.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/VariableChange.h"
#include "tests/support/WaitUntil.h"

namespace {

namespace files = std::filesystem;
using dovrel::test::waitUntil;
using portability::EndpointClaim;

constexpr LSLaunchFlags kFlags = kLSLaunchDontAddToRecents | kLSLaunchDontSwitch | kLSLaunchNoParams;
constexpr OSType kSignature = 'TSTR';

std::string infoPlist(const std::string& executable, const std::string& signature = "TSTR",
                      const std::string& type = "APPL") {
    return "<plist version=\"1.0\"><dict><key>CFBundleExecutable</key><string>" + executable +
           "</string><key>CFBundleSignature</key><string>" + signature +
           "</string><key>CFBundlePackageType</key><string>" + type + "</string></dict></plist>";
}

OSStatus launch(const std::string& path, CFURLRef* launched = nullptr) {
    const Held<CFURLRef> url(newFileURL(path, true));
    const LSLaunchURLSpec spec = {url.get(), nullptr, nullptr, kFlags, nullptr};
    return LSOpenFromURLSpec(&spec, launched);
}

class Launch : public testing::Test {
  protected:
    Launch() {
        // The root has its own /tmp, so that its endpoints are not visible to other roots.
        files::create_directory(folder_.path("tmp"));
        chmod(folder_.path("tmp").c_str(), 0700);
        installProbe(program_);
        writeInfo(infoPlist("Server"));
    }

    void writeInfo(const std::string& content) const {
        folder_.write("Library/Server.app/Contents/Info.plist", content);
    }

    void replaceProgram(const std::string& content, mode_t mode) const {
        files::remove(program_);
        folder_.write("Library/Server.app/Contents/MacOS/Server", content);
        chmod(program_.c_str(), mode);
    }

    int runningServers() const {
        int count = 0;
        for (const portability::Process& process : portability::listProcesses()) {
            count += process.file == program_ ? 1 : 0;
        }
        return count;
    }

    bool isEndpointFree() const {
        EndpointClaim claim;
        return EndpointClaim::claim(kSignature, claim) == EndpointClaim::Outcome::claimed;
    }

    const dovrel::test::TemporaryFolder folder_;
    const VariableChange root_{"POS_SYSTEM_ROOT", folder_.path().c_str()};
    const std::string program_ = folder_.path("Library/Server.app/Contents/MacOS/Server");
};

}  // namespace

TEST_F(Launch, Application_Starts_AndItsURLIsReturned) {
    CFURLRef launched = nullptr;
    ASSERT_EQ(launch("/Library/Server.app", &launched), noErr);
    const Held<CFURLRef> holder(launched);
    EXPECT_EQ(toPath(launched), folder_.path("Library/Server.app"));
    const ProbeReport report(program_);
    EXPECT_EQ(runningServers(), 1);
}

TEST_F(Launch, Application_ReceivesTheEndpointAndNothingElse) {
    const VariableChange marked("DOVREL_TEST_MARK", "kept");
    ASSERT_EQ(launch("/Library/Server.app"), noErr);
    const ProbeReport report(program_);
    EXPECT_EQ(report["arguments"], "1");
    EXPECT_EQ(report["descriptor 3"].substr(0, 8), "socket:[");
    EXPECT_EQ(report["descriptor 4"].substr(0, folder_.path("tmp").size()), folder_.path("tmp"));
    EXPECT_EQ(report["descriptor 5"], "(none)");
    EXPECT_EQ(report["environment DOVREL_TEST_MARK"], "kept");
    EXPECT_EQ(report["environment POS_SYSTEM_ROOT"], folder_.path());
    const std::string announcement = EndpointClaim::inheritanceEntry(kSignature, 3, 4);
    const std::size_t equals = announcement.find('=');
    EXPECT_EQ(report["environment " + announcement.substr(0, equals)], announcement.substr(equals + 1));
}

TEST_F(Launch, Application_EndpointIsItsAsLongAsItLives) {
    ASSERT_EQ(launch("/Library/Server.app"), noErr);
    ProbeReport report(program_);
    EXPECT_FALSE(isEndpointFree());
    const int connection = portability::connectToEndpoint(kSignature);
    EXPECT_GE(connection, 0) << "events queue before the application has taken its first step";
    close(connection);
    report.endProbe();
    // A process that is ending is no longer listed, but may still hold its endpoint.
    EXPECT_TRUE(waitUntil([this] { return isEndpointFree(); }));
}

TEST_F(Launch, Application_ThatRunsAlready_IsNotStartedAgain) {
    ASSERT_EQ(launch("/Library/Server.app"), noErr);
    const ProbeReport report(program_);
    CFURLRef launched = nullptr;
    EXPECT_EQ(launch("/Library/Server.app", &launched), noErr);
    const Held<CFURLRef> holder(launched);
    EXPECT_EQ(toPath(launched), folder_.path("Library/Server.app"));
    EXPECT_EQ(runningServers(), 1);
}

TEST_F(Launch, Application_ThatHasEnded_IsStartedAnew) {
    ASSERT_EQ(launch("/Library/Server.app"), noErr);
    ProbeReport first(program_);
    const pid_t firstId = first.id();
    first.endProbe();
    // A process that is ending counts as running while it still listens.
    ASSERT_TRUE(waitUntil([this] { return isEndpointFree(); }));
    ASSERT_EQ(launch("/Library/Server.app"), noErr);
    const ProbeReport second(program_);
    EXPECT_NE(second.id(), firstId);
}

TEST_F(Launch, ManyThreads_LaunchingAtOnce_StartOneProcess) {
    std::atomic<int> failures{0};
    std::vector<std::thread> threads;
    for (int index = 0; index < 8; ++index) {
        threads.emplace_back([&failures] { failures += launch("/Library/Server.app") == noErr ? 0 : 1; });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(failures, 0);
    EXPECT_EQ(runningServers(), 1);
    const ProbeReport report(program_);
}

TEST_F(Launch, TwoProcesses_LaunchingAtOnce_StartOneProcessThatOutlivesBoth) {
    std::vector<pid_t> launchers;
    for (int index = 0; index < 2; ++index) {
        launchers.push_back(fork());
        if (launchers.back() == 0) {
            _exit(launch("/Library/Server.app") == noErr ? 0 : 1);
        }
    }
    for (const pid_t launcher : launchers) {
        int status = -1;
        waitpid(launcher, &status, 0);
        EXPECT_EQ(status, 0);
    }
    const ProbeReport report(program_);
    EXPECT_EQ(runningServers(), 1);
    for (const pid_t launcher : launchers) {
        EXPECT_NE(report["parent"], std::to_string(launcher));
    }
    EXPECT_NE(report["parent"], std::to_string(getpid()));
}

TEST_F(Launch, ApplicationThatEndsAtOnce_LeavesNothingBehind) {
    files::remove(program_);
    files::copy_file("/bin/true", program_);
    ASSERT_EQ(launch("/Library/Server.app"), noErr);
    EXPECT_TRUE(waitUntil([this] { return isEndpointFree(); }));
    EXPECT_TRUE(waitUntil([this] { return runningServers() == 0; }));
    EXPECT_EQ(waitpid(-1, nullptr, __WALL), -1) << "it was no child of this process";
}

TEST_F(Launch, ApplicationWithoutSignature_StartsWithoutEndpoint) {
    writeInfo(infoPlist("Server", "\?\?\?\?"));
    ASSERT_EQ(launch("/Library/Server.app"), noErr);
    const ProbeReport report(program_);
    EXPECT_EQ(report["descriptor 3"], "(none)");
}

TEST_F(Launch, NothingAtThePath_IsNotFound) {
    CFURLRef launched = reinterpret_cast<CFURLRef>(&launched);
    EXPECT_EQ(launch("/Library/Absent.app", &launched), fnfErr);
    EXPECT_EQ(launched, reinterpret_cast<CFURLRef>(&launched)) << "untouched";
}

TEST_F(Launch, PathOfSomethingElse_IsNotAnApplication) {
    folder_.write("Library/file", "x");
    EXPECT_EQ(launch("/Library/file"), kLSNotAnApplicationErr);
    files::create_directory(folder_.path("Library/Bare.app"));
    EXPECT_EQ(launch("/Library/Bare.app"), kLSNotAnApplicationErr);
    writeInfo(infoPlist("Server", "TSTR", "BNDL"));
    EXPECT_EQ(launch("/Library/Server.app"), kLSNotAnApplicationErr);
    writeInfo("damaged");
    EXPECT_EQ(launch("/Library/Server.app"), kLSNotAnApplicationErr);
    EXPECT_EQ(runningServers(), 0);
}

TEST_F(Launch, ExecutableThatIsMissing_IsNoExecutable) {
    for (const char* name : {"Absent", "", "../MacOS/Server", ".", ".."}) {
        writeInfo(infoPlist(name));
        EXPECT_EQ(launch("/Library/Server.app"), kLSNoExecutableErr) << name;
    }
    files::create_directory(folder_.path("Library/Server.app/Contents/MacOS/Folder"));
    writeInfo(infoPlist("Folder"));
    EXPECT_EQ(launch("/Library/Server.app"), kLSNoExecutableErr);
    EXPECT_TRUE(isEndpointFree());
}

TEST_F(Launch, ExecutableThatCannotBeStarted_HasTheCodeOfItsCauseAndFreesTheEndpoint) {
    replaceProgram("#!/bin/sh\n", 0644);
    EXPECT_EQ(launch("/Library/Server.app"), kLSNoLaunchPermissionErr)
        << "no one may run it, the administrator included";
    EXPECT_TRUE(isEndpointFree());
    replaceProgram("neither program nor script", 0755);
    EXPECT_EQ(launch("/Library/Server.app"), kLSExecutableIncorrectFormat);
    EXPECT_TRUE(isEndpointFree());
    replaceProgram("#!/no/such/interpreter\n", 0755);
    EXPECT_EQ(launch("/Library/Server.app"), kLSUnknownErr);
    EXPECT_TRUE(isEndpointFree());
}

TEST_F(Launch, EndpointsThatCannotBeMade_AreAServerCommunicationError) {
    folder_.write("tmp/pos-events-" + std::to_string(geteuid()), "a file where the folder should be");
    EXPECT_EQ(launch("/Library/Server.app"), kLSServerCommunicationErr);
    EXPECT_EQ(runningServers(), 0);
}

TEST_F(Launch, IncompleteRequests_AreParameterErrors) {
    const LSLaunchURLSpec empty = {nullptr, nullptr, nullptr, kFlags, nullptr};
    EXPECT_EQ(LSOpenFromURLSpec(nullptr, nullptr), paramErr);
    EXPECT_EQ(LSOpenFromURLSpec(&empty, nullptr), paramErr);
    EXPECT_EQ(LSOpenCFURLRef(nullptr, nullptr), paramErr);
}
