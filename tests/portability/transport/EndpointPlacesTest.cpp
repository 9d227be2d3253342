// Endpoints of processes whose environments select different folders. All of them must find each other.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>

#include <cstring>
#include <functional>
#include <vector>

#include "EndpointTest.h"
#include "portability/posix/SystemRoot.h"
#include "portability/transport/EndpointFolder.h"
#include "tests/support/MountNamespace.h"
#include "tests/support/NeedsRoot.h"
#include "tests/support/OrdinaryUser.h"
#include "tests/support/Processes.h"

using namespace portability;

namespace {

namespace files = std::filesystem;

constexpr uid_t kOtherUser = 65534;

class EndpointPlaces : public EndpointTest {
  protected:
    struct Environment {
        const char* name;
        std::function<void()> enter;
    };

    // Returns the environments that processes of one user can have.
    std::vector<Environment> environments() const {
        const files::path own = environment_.runtimeFolder();
        const files::path foreign = environment_.makeFolder("of another user");
        if (geteuid() == 0) {
            EXPECT_EQ(chown(foreign.c_str(), kOtherUser, kOtherUser), 0);
        }
        return {
            {"a session", [own] { TemporaryEnvironment::set("XDG_RUNTIME_DIR", own); }},
            {"cron", [] { unsetenv("XDG_RUNTIME_DIR"); }},
            {"su from another user", [foreign] { TemporaryEnvironment::set("XDG_RUNTIME_DIR", foreign); }},
            {"a relative folder", [] { TemporaryEnvironment::set("XDG_RUNTIME_DIR", "run"); }},
            {"a missing folder", [] { TemporaryEnvironment::set("XDG_RUNTIME_DIR", "/not/there"); }}};
    }

    // Returns the folder that the root has for this user while the user is logged in.
    files::path userFolder() const {
        return environment_.folder() / "root/run/user" / std::to_string(geteuid());
    }
    void logIn() const { environment_.makeFolder("root/run/user/" + std::to_string(geteuid())); }

    // Another user has created a listening socket first, at the path of ours.
    void occupyTmp() const {
        const files::path folder = environment_.endpointFolder();
        files::create_directory(folder);
        ASSERT_EQ(chown(folder.c_str(), kOtherUser, kOtherUser), 0);
        ASSERT_EQ(chmod(folder.c_str(), 0777), 0);
    }

    static Outcome claimIn(const Environment& environment) {
        return static_cast<Outcome>(inForkedProcess([&environment] {
            environment.enter();
            return static_cast<int>(claimAndLetGo());
        }));
    }

    static bool isConnectableIn(const Environment& environment) {
        return inForkedProcess([&environment] {
                   environment.enter();
                   return isConnectable() ? 1 : 0;
               }) == 1;
    }

    void expectThatAllFindAndNobodyClaims(const std::string& owner) const {
        for (const Environment& environment : environments()) {
            EXPECT_TRUE(isConnectableIn(environment)) << environment.name << " does not find " << owner;
            EXPECT_EQ(claimIn(environment), Outcome::inUse) << environment.name << " beside " << owner;
        }
    }
};

}  // namespace

TEST_F(EndpointPlaces, EndpointClaimedInAnyEnvironment_IsFoundInAllAndClaimedInNone) {
    for (const bool isLoggedIn : {false, true}) {
        if (isLoggedIn) logIn();
        for (const Environment& environment : environments()) {
            WaitingProcess owner([&environment] {
                environment.enter();
                return claimAndKeep();
            });
            ASSERT_EQ(owner.result(), static_cast<int>(Outcome::claimed)) << environment.name;
            expectThatAllFindAndNobodyClaims(environment.name);
        }
    }
}

TEST_F(EndpointPlaces, UserWhoLogsInAndOutWhileTheOwnerLives_FindsItAllTheTime) {
    EndpointClaim claim;
    ASSERT_EQ(EndpointClaim::claim(kEndpointSignature, claim), Outcome::claimed);
    logIn();
    expectThatAllFindAndNobodyClaims("the owner from before");
    files::remove_all(userFolder());
    expectThatAllFindAndNobodyClaims("the owner from before");
}

TEST_F(EndpointPlaces, OwnerFromASessionThatHasEnded_IsStillFound) {
    logIn();
    TemporaryEnvironment::set("XDG_RUNTIME_DIR", userFolder());
    EndpointClaim claim;
    ASSERT_EQ(EndpointClaim::claim(kEndpointSignature, claim), Outcome::claimed);
    files::remove_all(userFolder());
    expectThatAllFindAndNobodyClaims("the owner from the session");
}

TEST_F(EndpointPlaces, ClaimsAtTheSameMomentInDifferentEnvironments_ExactlyOneSucceeds) {
    const std::vector<Environment> all = environments();
    for (int round = 0; round < 20; ++round) {
        expectOneClaim(resultsAtOnce(2 * all.size(), [&all](size_t i) {
            all[i % all.size()].enter();
            return claimAndKeep();
        }));
    }
}

TEST_F(EndpointPlaces, FolderOfAnotherUserInTmp_LeavesAllWhoAreLoggedInTogether) {
    NEEDS_ROOT("give a folder to another user");
    occupyTmp();
    logIn();
    for (const Environment& environment : environments()) {
        WaitingProcess owner([&environment] {
            environment.enter();
            return claimAndKeep();
        });
        ASSERT_EQ(owner.result(), static_cast<int>(Outcome::claimed)) << environment.name;
        expectThatAllFindAndNobodyClaims(environment.name);
    }
    EXPECT_TRUE(files::is_empty(environment_.endpointFolder())) << "nothing of ours goes there";
}

TEST_F(EndpointPlaces, FolderOfAnotherUserInTmp_LeavesTheRuntimeFolder) {
    NEEDS_ROOT("give a folder to another user");
    occupyTmp();
    EndpointClaim claim;
    ASSERT_EQ(EndpointClaim::claim(kEndpointSignature, claim), Outcome::claimed);
    EXPECT_TRUE(isConnectable());
    EXPECT_EQ(claimIn(environments().front()), Outcome::inUse);
    EXPECT_EQ(claimIn(environments()[1]), Outcome::failed) << "no folder is left there";
    claim.withdraw();
    EXPECT_TRUE(files::is_empty(environment_.runtimeFolder() / "pos-events"));
}

TEST_F(EndpointPlaces, SocketOfAnotherUser_IsNeitherUsedNorInTheWay) {
    NEEDS_ROOT("become another user");
    const std::string name = endpointName(systemRoot(), kEndpointSignature) + ".socket";
    for (const files::path& path : {environment_.runtimeFolder(), environment_.endpointFolder()}) {
        const files::path folder = path == environment_.endpointFolder() ? path : path / "pos-events";
        files::create_directory(folder);
        ASSERT_EQ(chmod(folder.c_str(), 0700), 0);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::strcpy(address.sun_path, (folder / name).c_str());
        const FileDescriptor planted(socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0));
        ASSERT_EQ(bind(planted.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
        ASSERT_EQ(inForkedProcess([&planted] {
                      if (setuid(kOtherUser) != 0) return 1;
                      return listen(planted.get(), 8) == 0 ? 0 : 2;
                  }),
                  0);
        EXPECT_FALSE(isConnectable()) << folder;
        EndpointClaim claim;
        ASSERT_EQ(EndpointClaim::claim(kEndpointSignature, claim), Outcome::claimed) << folder;
        EXPECT_TRUE(isConnectable()) << folder;
        claim.withdraw();
    }
}

TEST_F(EndpointPlaces, UmaskOfTheOwner_KeepsNoOtherProcessOfItsUserOut) {
    ASSERT_EQ(chmod(environment_.folder().c_str(), 0755), 0);
    for (const char* opened : {"root", "root/tmp"})
        ASSERT_EQ(chmod((environment_.folder() / opened).c_str(), 0777), 0);
    for (const mode_t mask : {0177, 0277, 0777}) {
        EXPECT_TRUE(holdsForOrdinaryUser([mask] {
            WaitingProcess owner([mask] {
                umask(mask);
                return claimAndKeep();
            });
            const bool isFound = isConnectable() && claimAndLetGo() == Outcome::inUse;
            owner.kill();
            // The files that the owner left can be used again.
            return isFound && owner.result() == static_cast<int>(Outcome::claimed) &&
                   claimAndLetGo() == Outcome::claimed;
        })) << mask;
        for (const auto& made : files::directory_iterator(environment_.folder() / "root/tmp"))
            files::remove_all(made);
    }
}

TEST_F(EndpointPlaces, LockThatIsNoFileOfThisUser_IsAFailureAtOnce) {
    const files::path lock =
        environment_.endpointFolder() / (endpointName(systemRoot(), kEndpointSignature) + ".lock");
    ASSERT_TRUE(makeEndpointFolder(endpointPlaces(systemRoot())));
    ASSERT_EQ(mkfifo(lock.c_str(), 0600), 0);
    EXPECT_EQ(claimAndLetGo(), Outcome::failed);
    files::remove(lock);
    files::create_directory(lock);
    EXPECT_EQ(claimAndLetGo(), Outcome::failed);
    files::remove(lock);
    if (geteuid() != 0) return;
    ASSERT_EQ(claimAndLetGo(), Outcome::claimed);
    ASSERT_EQ(chown(lock.c_str(), kOtherUser, kOtherUser), 0);
    EXPECT_EQ(claimAndLetGo(), Outcome::failed);
}

// systemd-tmpfiles tries to take this lock before it cleans a folder up.
TEST_F(EndpointPlaces, FolderOfALivingOwner_IsLockedAgainstCleaning) {
    EndpointClaim claim;
    ASSERT_EQ(EndpointClaim::claim(kEndpointSignature, claim), Outcome::claimed);
    const FileDescriptor folder(open(environment_.endpointFolder().c_str(), O_RDONLY | O_DIRECTORY));
    EXPECT_NE(flock(folder.get(), LOCK_EX | LOCK_NB), 0);
    EXPECT_EQ(errno, EWOULDBLOCK);
    EndpointClaim other;
    EXPECT_EQ(EndpointClaim::claim('OTHR', other), Outcome::claimed) << "owners share the lock";
    claim = EndpointClaim();
    other = EndpointClaim();
    EXPECT_EQ(flock(folder.get(), LOCK_EX | LOCK_NB), 0);
}

// The other tests use a root with its own /tmp. This test uses the fixed paths of the system, as empty
// folders in a mount namespace.
TEST_F(EndpointPlaces, RootOfTheSystem_HasItsEndpointsInTheSystemsPlaces) {
    NEEDS_ROOT("make a mount namespace");
    EXPECT_EQ(inForkedProcess([] {
                  const bool isReady = enterMountNamespace() && mountEmptyFolder("/tmp", "1777") &&
                                       mountEmptyFolder("/run", "0755");
                  if (!isReady) return 1;
                  unsetenv("POS_SYSTEM_ROOT");
                  unsetenv("XDG_RUNTIME_DIR");
                  const std::string name = endpointName("/", kEndpointSignature);
                  EndpointClaim claim;
                  if (EndpointClaim::claim(kEndpointSignature, claim) != Outcome::claimed) return 2;
                  if (!files::is_socket("/tmp/pos-events-0/" + name + ".socket")) return 3;
                  // The user logs in.
                  files::create_directories("/run/user/0");
                  TemporaryEnvironment::set("XDG_RUNTIME_DIR", "/run/user/0");
                  if (!isConnectable() || claimAndLetGo() != Outcome::inUse) return 4;
                  claim.withdraw();
                  claim = EndpointClaim();
                  // Another user takes our name.
                  if (chown("/tmp/pos-events-0", kOtherUser, kOtherUser) != 0) return 5;
                  if (EndpointClaim::claim(kEndpointSignature, claim) != Outcome::claimed) return 6;
                  if (!files::is_socket("/run/user/0/pos-events/" + name + ".socket")) return 7;
                  unsetenv("XDG_RUNTIME_DIR");
                  return isConnectable() && claimAndLetGo() == Outcome::inUse ? 0 : 8;
              }),
              0);
}
