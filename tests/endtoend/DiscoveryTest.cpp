// Which processes a host takes for the server.
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "tests/endtoend/EndToEnd.h"
#include "tests/endtoend/OtherHost.h"
#include "tests/endtoend/Sleeper.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/NeedsRoot.h"
#include "tests/support/TemporaryFolder.h"

namespace dovrel::test {
namespace {

namespace fs = std::filesystem;

constexpr uid_t kOtherUser = 65534;
constexpr char kInsideBundle[] = "/Contents/MacOS/Merrowd";

void becomeOtherUser() {
    if (setgid(kOtherUser) != 0 || setuid(kOtherUser) != 0) _exit(126);
}

uid_t readUser(pid_t process) {
    struct stat status = {};
    EXPECT_EQ(stat(("/proc/" + std::to_string(process)).c_str(), &status), 0);
    return status.st_uid;
}

// Returns "" if the process has ended, even if its parent has not waited for it yet.
std::string readExecutable(pid_t process) {
    std::error_code failed;
    return fs::read_symlink("/proc/" + std::to_string(process) + "/exe", failed).string();
}

bool hasEventPoll(const fs::path& process) {
    std::error_code failed;
    for (const auto& descriptor : fs::directory_iterator(process / "fd", failed)) {
        if (fs::read_symlink(descriptor.path(), failed) == "anon_inode:[eventpoll]") return true;
    }
    return false;
}

// Returns true if a process that runs this program has reached its event
// loop, and so has opened its endpoint.
bool isInEventLoop(const std::string& program) {
    for (const auto& process : fs::directory_iterator("/proc")) {
        std::error_code failed;
        if (fs::read_symlink(process.path() / "exe", failed) == program && hasEventPoll(process)) return true;
    }
    return false;
}

class Discovery : public EndToEnd {
  protected:
    Discovery() { library_.InitializePOS(); }
    ~Discovery() override { library_.TerminatePOS(); }

    // Expects that registering launches the server of the root and uses no other process.
    void expectThatTheServerIsFound(const std::string& beside) {
        uint32_t application = 0;
        EXPECT_EQ(host_.registerApplication(application), POS_OK) << beside;
        EXPECT_EQ(root_.servers().size(), 1u) << beside;
        library_.posUnregisterApplication(application);
        root_.endServers(SIGTERM);
    }

    // Lets another user use the installation.
    void openToAll() const {
        fs::permissions(root_.path(), fs::perms(0755));
        fs::permissions(root_.path() + "/tmp", fs::perms(01777));
    }

    // Replaces the server's program by a copy, because the staged file may be a hard link to the built one.
    void replaceProgram() const {
        const std::string copy = root_.serverExecutable() + ".copy";
        fs::copy_file(root_.serverExecutable(), copy);
        fs::rename(copy, root_.serverExecutable());
    }

    // Ends a server that the root does not recognise as its own.
    void endServer(uint32_t application, pid_t server) {
        library_.posUnregisterApplication(application);
        ServerControl::quit();
        EXPECT_TRUE(waitUntil([server] { return readExecutable(server).empty(); }));
    }

    const TemporaryFolder elsewhere_;
};

TEST_F(Discovery, ProgramOfTheServersName_IsNotTakenForTheServer) {
    for (const std::string& program : {elsewhere_.path("Merrowd"), root_.path() + "/home/bin/Merrowd",
                                       root_.path() + "/Library/tools/Merrowd"}) {
        const Sleeper sleeper(program);
        expectThatTheServerIsFound(program);
    }
}

TEST_F(Discovery, ProgramOfTheServersNameInABundle_IsNotTakenForTheServer) {
    for (const std::string& bundle : {elsewhere_.path("Merrowd.app"), root_.path() + "/Elsewhere/Merrowd.app",
                                      root_.path() + "/Library/Other.app"}) {
        fs::create_directories(bundle + "/Contents");
        fs::copy_file(root_.server() + "/Contents/Info.plist", bundle + "/Contents/Info.plist");
        const Sleeper sleeper(bundle + kInsideBundle);
        expectThatTheServerIsFound(bundle);
    }
}

TEST_F(Discovery, ApplicationOfTheServersNameWithAnotherSignature_IsNotTakenForTheServer) {
    const std::string bundle = root_.path() + "/Applications/Merrowd.app";
    fs::create_directories(bundle + "/Contents");
    std::ofstream(bundle + "/Contents/Info.plist")
        << "<plist version=\"1.0\"><dict><key>CFBundleExecutable</key><string>Merrowd</string>"
           "<key>CFBundleSignature</key><string>PrBd</string></dict></plist>";
    const Sleeper sleeper(bundle + kInsideBundle);
    expectThatTheServerIsFound(bundle);
}

TEST_F(Discovery, OtherProgramInTheServersBundle_IsNotTakenForTheServer) {
    for (const char* place : {"/Contents/Resources/Merrowd", "/Contents/MacOS/old/Merrowd", "/Merrowd"}) {
        const Sleeper sleeper(root_.server() + place);
        expectThatTheServerIsFound(place);
    }
}

TEST_F(Discovery, ProgramWhoseNameMerelyBeginsWithThatOfTheServer_IsNotTakenForIt) {
    const Sleeper sleeper(root_.server() + "/Contents/MacOS/MerrowdX");
    expectThatTheServerIsFound("MerrowdX");
}

TEST_F(Discovery, HostOfTheServersName_FindsTheServer) {
    const std::string program = elsewhere_.path("Merrowd");
    fs::copy_file(OTHER_HOST, program);
    OtherHost host(root_.library(), nullptr, program);
    host.go();
    EXPECT_TRUE(host.endsWell());
    EXPECT_EQ(root_.servers().size(), 1u);
}

// The copy has the server's signature and handlers, but it is not the server of this root.
TEST_F(Discovery, CopyOfTheServerThatRunsElsewhere_IsNotUsed) {
    const std::string copy = elsewhere_.path("Merrowd.app");
    fs::copy(root_.server(), copy, fs::copy_options::recursive);
    ChildProcess process({copy + kInsideBundle});
    EXPECT_TRUE(waitUntil([&] { return isInEventLoop(copy + kInsideBundle); }));
    const uint32_t application = host_.registered();
    EXPECT_EQ(root_.servers().size(), 1u);
    EXPECT_EQ(readExecutable(ServerControl::status()["process"]), root_.serverExecutable());
    library_.posUnregisterApplication(application);
}

TEST_F(Discovery, ServerWhoseProgramWasReplacedWhileItRuns_IsUsed) {
    host_.registered();
    const std::vector<pid_t> before = root_.servers();
    replaceProgram();
    OtherHost other(root_.library());
    other.go();
    EXPECT_TRUE(other.endsWell());
    EXPECT_EQ(root_.servers(), before);
}

TEST_F(Discovery, RootThroughASymbolicLink_HasTheSameServer) {
    host_.registered();
    const std::vector<pid_t> before = root_.servers();
    fs::create_directory_symlink(root_.path(), elsewhere_.path("link"));
    OtherHost other(root_.library(),
                    [this] { setenv("POS_SYSTEM_ROOT", elsewhere_.path("link").c_str(), 1); });
    other.go();
    EXPECT_TRUE(other.endsWell());
    EXPECT_EQ(root_.servers(), before);
}

TEST_F(Discovery, InstallationThroughASymbolicLink_HasOneServer) {
    const fs::path installed = fs::path(root_.server()).parent_path();
    fs::rename(installed, elsewhere_.path("installed"));
    fs::create_directory_symlink(elsewhere_.path("installed"), installed);
    const uint32_t application = host_.registered();
    const int server = ServerControl::status()["process"];
    OtherHost other(root_.library());
    other.go();
    EXPECT_TRUE(other.endsWell());
    EXPECT_EQ(ServerControl::status()["process"], server);
    endServer(application, server);
}

// As under valgrind or an emulator: the process has another name, and hosts find it by its endpoint.
TEST_F(Discovery, ServerUnderAnInterpreter_IsUsedByAll) {
    fs::rename(root_.serverExecutable(), root_.serverExecutable() + ".real");
    std::ofstream(root_.serverExecutable()) << "#!/bin/sh\n\"$0.real\"\n";
    fs::permissions(root_.serverExecutable(), fs::perms(0755));
    const uint32_t application = host_.registered();
    const int server = ServerControl::status()["process"];
    EXPECT_GT(server, 0);
    OtherHost other(root_.library());
    other.go();
    EXPECT_TRUE(other.endsWell());
    EXPECT_EQ(ServerControl::status()["process"], server);
    endServer(application, server);
}

TEST_F(Discovery, ServerOfAnotherUser_NeitherDisturbsNorIsUsed) {
    NEEDS_ROOT("become another user");
    openToAll();
    OtherHost theirs(root_.library(), becomeOtherUser);
    theirs.goAndStay();
    ASSERT_TRUE(theirs.isServed());
    const std::vector<pid_t> before = root_.servers();
    ASSERT_EQ(before.size(), 1u);
    EXPECT_EQ(readUser(before.front()), kOtherUser);
    host_.registered();
    ASSERT_EQ(root_.servers().size(), 2u);
    const int ours = ServerControl::status()["process"];
    EXPECT_EQ(readUser(ours), geteuid());
    OtherHost theirNext(root_.library(), becomeOtherUser);
    theirNext.go();
    EXPECT_TRUE(theirNext.endsWell());
    EXPECT_EQ(root_.servers().size(), 2u) << "each user has one";
}

// The program may be run but not read. The system then hides from the user which program the process runs.
TEST_F(Discovery, ServerThatMayNotBeRead_IsUsedByAllHostsOfItsUser) {
    NEEDS_ROOT("become another user");
    openToAll();
    replaceProgram();
    fs::permissions(root_.serverExecutable(), fs::perms(0711));
    OtherHost first(root_.library(), becomeOtherUser);
    first.goAndStay();
    ASSERT_TRUE(first.isServed());
    const std::vector<pid_t> before = root_.servers();
    ASSERT_EQ(before.size(), 1u);
    OtherHost second(root_.library(), becomeOtherUser);
    second.go();
    EXPECT_TRUE(second.endsWell());
    EXPECT_EQ(root_.servers(), before);
}

}  // namespace
}  // namespace dovrel::test
