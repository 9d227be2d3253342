// Hosts of one user in different environments: a desktop session, cron, su. All of them use the same server.
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "tests/endtoend/EndToEnd.h"
#include "tests/endtoend/OtherHost.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/MountNamespace.h"
#include "tests/support/NeedsRoot.h"
#include "tests/support/ServerControl.h"

namespace dovrel::test {
namespace {

namespace fs = std::filesystem;

constexpr uid_t kOtherUser = 65534;

// Only the system root, as after "env -i", and the variables that sanitizers need.
std::vector<std::string> bareEnvironment() {
    std::vector<std::string> entries;
    for (const char* name :
         {"POS_SYSTEM_ROOT", "ASAN_OPTIONS", "LSAN_OPTIONS", "TSAN_OPTIONS", "UBSAN_OPTIONS"}) {
        const char* const value = getenv(name);
        if (value != nullptr) entries.push_back(std::string(name) + '=' + value);
    }
    return entries;
}

void leaveOnlyTheRoot() {
    static std::vector<std::string> entries;  // `environ` points into these entries
    entries = bareEnvironment();
    clearenv();
    for (std::string& entry : entries)
        putenv(entry.data());
}

class Environments : public InSession {
  protected:
    void expectThatAHostUses(const std::vector<pid_t>& servers, const std::function<void()>& prepare) {
        OtherHost host(root_.library(), prepare);
        host.go();
        EXPECT_TRUE(host.endsWell());
        EXPECT_EQ(root_.servers(), servers);
    }

    std::string userFolder() const { return root_.path() + "/run/user/" + std::to_string(geteuid()); }
    void logIn() const {
        fs::create_directories(userFolder());
        fs::permissions(userFolder(), fs::perms::owner_all);
    }
};

TEST_F(Environments, ServerOfASession_IsUsedWithoutAnyEnvironment) {
    host_.registered();
    expectThatAHostUses(root_.servers(), leaveOnlyTheRoot);
}

TEST_F(Environments, ServerThatStartedWithoutAnyEnvironment_IsUsedInASession) {
    OtherHost cron(root_.library(), leaveOnlyTheRoot);
    cron.goAndStay();
    ASSERT_TRUE(cron.isServed());
    const std::vector<pid_t> before = root_.servers();
    host_.registered();
    EXPECT_EQ(root_.servers(), before);
}

TEST_F(Environments, ServerOfASession_IsUsedAfterSuAndWithInvalidRuntimeFolders) {
    host_.registered();
    const std::string foreign = root_.path() + "/run/foreign";
    fs::create_directory(foreign);
    if (geteuid() == 0) {
        ASSERT_EQ(chown(foreign.c_str(), kOtherUser, kOtherUser), 0);
    }
    for (const std::string& folder : {foreign, std::string("run"), root_.path() + "/not/there"}) {
        expectThatAHostUses(root_.servers(), [&folder] { setenv("XDG_RUNTIME_DIR", folder.c_str(), 1); });
    }
}

TEST_F(Environments, UserWhoLogsInAndOutWhileTheServerRuns_KeepsIt) {
    host_.registered();
    const std::vector<pid_t> before = root_.servers();
    const auto inSession = [this] { setenv("XDG_RUNTIME_DIR", userFolder().c_str(), 1); };
    logIn();
    expectThatAHostUses(before, inSession);
    expectThatAHostUses(before, leaveOnlyTheRoot);
    fs::remove_all(userFolder());
    expectThatAHostUses(before, inSession);
    expectThatAHostUses(before, leaveOnlyTheRoot);
}

TEST_F(Environments, ServerOfASessionThatHasEnded_IsStillUsed) {
    logIn();
    OtherHost session(root_.library(), [this] { setenv("XDG_RUNTIME_DIR", userFolder().c_str(), 1); });
    session.goAndStay();
    ASSERT_TRUE(session.isServed());
    fs::remove_all(userFolder());
    expectThatAHostUses(root_.servers(), leaveOnlyTheRoot);
}

TEST_F(Environments, HostsOfTwoAtTheSameMoment_EndUpWithOneServerThatServesBoth) {
    for (int round = 0; round < 10; ++round) {
        OtherHost session(root_.library());
        OtherHost cron(root_.library(), leaveOnlyTheRoot);
        session.go();
        cron.go();
        EXPECT_TRUE(session.endsWell());
        EXPECT_TRUE(cron.endsWell());
        EXPECT_EQ(root_.servers().size(), 1u);
        root_.endServers(SIGKILL);
    }
}

TEST_F(Environments, FolderOfAnotherUserInTheServersPlace_DisturbsNobodyWhoIsLoggedIn) {
    NEEDS_ROOT("give a folder to another user");
    const std::string occupied = root_.path() + "/tmp/pos-events-" + std::to_string(geteuid());
    fs::create_directory(occupied);
    fs::permissions(occupied, fs::perms::all);
    ASSERT_EQ(chown(occupied.c_str(), kOtherUser, kOtherUser), 0);
    logIn();
    host_.registered();
    EXPECT_EQ(root_.servers().size(), 1u);
    expectThatAHostUses(root_.servers(), leaveOnlyTheRoot);
    expectThatAHostUses(root_.servers(), [this] { setenv("XDG_RUNTIME_DIR", userFolder().c_str(), 1); });
    EXPECT_TRUE(fs::is_empty(occupied));
}

TEST_F(Environments, UmaskOfAHost_DoesNotExcludeOtherHostsOfItsUser) {
    NEEDS_ROOT("become another user");
    fs::permissions(root_.path(), fs::perms(0755));
    fs::permissions(root_.path() + "/tmp", fs::perms(01777));
    const auto become = [](mode_t mask) {
        umask(mask);
        if (setgid(kOtherUser) != 0 || setuid(kOtherUser) != 0) _exit(126);
    };
    for (const mode_t mask : {0177, 0277, 0777}) {
        OtherHost first(root_.library(), [&] { become(mask); });
        first.goAndStay();
        EXPECT_TRUE(first.isServed()) << mask;
        OtherHost second(root_.library(), [&] { become(022); });
        second.go();
        EXPECT_TRUE(second.endsWell()) << mask;
        EXPECT_EQ(root_.servers().size(), 1u) << mask;
        root_.endServers(SIGKILL);
        fs::remove_all(root_.path() + "/tmp/pos-events-" + std::to_string(kOtherUser));
    }
}

TEST_F(Environments, Tool_FindsTheServerWithoutAnyEnvironment) {
    host_.registered();
    ASSERT_EQ(root_.servers().size(), 1u);
    std::vector<std::string> command = {"env", "-i"};
    for (const std::string& entry : bareEnvironment())
        command.push_back(entry);
    command.insert(command.end(), {ServerControl::toolPath(), "server", "status"});
    const std::string answer = readOutput(command);
    EXPECT_NE(answer.find("process: " + std::to_string(root_.servers().front()) + "\n"), std::string::npos)
        << answer;
}

// A server in a container, or in a service with a /tmp of its own, cannot be reached from outside, nor one outside
// from there. So each side has its own server, whichever was first.
TEST_F(Environments, ServerWithAnotherTmp_DoesNotPreventTheLaunchOfAnother) {
    NEEDS_ROOT("make a mount namespace");
    root_.configure(setting("endWithLastClient", 1));
    const auto enterOwnTmp = [this] {
        if (!enterMountNamespace() || !mountEmptyFolder(root_.path() + "/tmp", "1777")) _exit(1);
    };
    for (const bool isInsideFirst : {true, false}) {
        ASSERT_TRUE(waitUntil([this] { return root_.servers().empty(); })) << "those of the last round";
        OtherHost inside(root_.library(), enterOwnTmp);
        OtherHost outside(root_.library());
        OtherHost& first = isInsideFirst ? inside : outside;
        OtherHost& second = isInsideFirst ? outside : inside;
        first.goAndStay();
        EXPECT_TRUE(first.isServed());
        second.goAndStay();
        EXPECT_TRUE(second.isServed());
        // From inside a chroot the paths of programs in other namespaces look different.
        if (!isChroot()) {
            EXPECT_EQ(root_.servers().size(), 2u);
        }
    }
}

// The other tests use a root with its own /tmp. These tests use the fixed paths of the system, as empty
// folders in a mount namespace, and keep the root at a path that stays visible.
class SystemPlaces {
  public:
    explicit SystemPlaces(const std::string& root) {
        isReady_ = enterMountNamespace() && mountEmptyFolder("/run", "0755") && mkdir(kRoot, 0755) == 0 &&
                   mount(root.c_str(), kRoot, nullptr, MS_BIND, nullptr) == 0 &&
                   mountEmptyFolder("/tmp", "1777");
        setenv("POS_SYSTEM_ROOT", kRoot, 1);
    }

    bool isReady() const { return isReady_; }
    static std::string inRoot(const std::string& path, const std::string& root) {
        return kRoot + path.substr(root.size());
    }

  private:
    static constexpr char kRoot[] = "/run/root";
    bool isReady_;
};

size_t countProcesses(const std::string& executable) {
    size_t count = 0;
    for (const fs::directory_entry& process : fs::directory_iterator("/proc")) {
        std::error_code failed;
        count += fs::read_symlink(process.path() / "exe", failed) == executable ? 1 : 0;
    }
    return count;
}

TEST_F(Environments, SystemsOwnPlaces_ASessionAndCronUseOneServer) {
    NEEDS_ROOT("make a mount namespace");
    root_.configure(setting("endWithLastClient", 1));
    fs::remove(root_.path() + "/tmp");
    const pid_t child = fork();
    if (child == 0) {
        const SystemPlaces places(root_.path());
        if (!places.isReady()) _exit(1);
        const std::string library = SystemPlaces::inRoot(root_.library(), root_.path());
        const std::string server = SystemPlaces::inRoot(root_.serverExecutable(), root_.path());
        fs::create_directories("/run/user/0");
        bool isRight = false;
        {
            OtherHost session(library, [] { setenv("XDG_RUNTIME_DIR", "/run/user/0", 1); });
            session.goAndStay();
            OtherHost cron(library, leaveOnlyTheRoot);
            const bool isServed = session.isServed();
            cron.go();
            isRight = cron.endsWell() && isServed && countProcesses(server) == 1 &&
                      !fs::is_empty("/tmp/pos-events-0");
        }
        const bool hasEnded = waitUntil([&server] { return countProcesses(server) == 0; });
        _exit(isRight && hasEnded && fs::is_empty("/tmp/pos-events-0") ? 0 : 2);
    }
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(WEXITSTATUS(status), 0);
}

}  // namespace
}  // namespace dovrel::test
