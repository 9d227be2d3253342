#include "portability/transport/Endpoint.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>

#include <chrono>
#include <vector>

#include "EndpointTest.h"
#include "portability/posix/SystemRoot.h"
#include "portability/transport/EndpointFolder.h"
#include "tests/support/NeedsRoot.h"
#include "tests/support/Processes.h"

using namespace portability;

TEST_F(EndpointTest, Connect_WithoutOwner_Fails) {
    EXPECT_FALSE(isConnectable());
}

TEST_F(EndpointTest, Claim_MakesItConnectable_UntilItIsLetGo) {
    {
        EndpointClaim claim;
        ASSERT_EQ(EndpointClaim::claim(kEndpointSignature, claim), Outcome::claimed);
        EXPECT_TRUE(isConnectable());
        EXPECT_FALSE(isConnectable('OTHR'));
    }
    EXPECT_FALSE(isConnectable());
    EXPECT_EQ(claimAndLetGo(), Outcome::claimed);
}

TEST_F(EndpointTest, Claim_WhileOwned_IsInUseAndTouchesNothing) {
    EndpointClaim claim;
    ASSERT_EQ(EndpointClaim::claim(kEndpointSignature, claim), Outcome::claimed);
    EndpointClaim other;
    EXPECT_EQ(EndpointClaim::claim(kEndpointSignature, other), Outcome::inUse);
    EXPECT_EQ(other.listenDescriptor(), -1);
    EXPECT_EQ(other.lockDescriptor(), -1);
    EXPECT_EQ(inForkedProcess([] { return static_cast<int>(claimAndLetGo()); }),
              static_cast<int>(Outcome::inUse));
    EXPECT_TRUE(isConnectable());
}

TEST_F(EndpointTest, Withdraw_LeavesNoFile_AndTheEndpointToOthers) {
    const std::string name = endpointName(systemRoot(), kEndpointSignature);
    EndpointClaim claim;
    ASSERT_EQ(EndpointClaim::claim(kEndpointSignature, claim), Outcome::claimed);
    const FileDescriptor folder(open(environment_.endpointFolder().c_str(), O_PATH | O_DIRECTORY));
    ASSERT_EQ(faccessat(folder.get(), (name + ".socket").c_str(), F_OK, 0), 0);
    claim.withdraw();
    EXPECT_NE(faccessat(folder.get(), (name + ".socket").c_str(), F_OK, 0), 0);
    EXPECT_NE(faccessat(folder.get(), (name + ".lock").c_str(), F_OK, 0), 0);
    EndpointClaim next;
    EXPECT_EQ(EndpointClaim::claim(kEndpointSignature, next), Outcome::claimed);
    claim.withdraw();
    EXPECT_TRUE(isConnectable()) << "the files of the next owner are not ours to remove";
}

TEST_F(EndpointTest, Claim_DescriptorsEndAtExec) {
    EndpointClaim claim;
    ASSERT_EQ(EndpointClaim::claim(kEndpointSignature, claim), Outcome::claimed);
    EXPECT_NE(fcntl(claim.listenDescriptor(), F_GETFD) & FD_CLOEXEC, 0);
    EXPECT_NE(fcntl(claim.lockDescriptor(), F_GETFD) & FD_CLOEXEC, 0);
}

TEST_F(EndpointTest, Claim_OfAKilledOwner_CanBeHadAtOnce) {
    EndpointClaim claim;
    WaitingProcess owner(
        [&claim] { return static_cast<int>(EndpointClaim::claim(kEndpointSignature, claim)); });
    ASSERT_EQ(owner.result(), static_cast<int>(Outcome::claimed));
    EXPECT_EQ(claimAndLetGo(), Outcome::inUse);
    owner.kill();
    EXPECT_FALSE(isConnectable()) << "its socket still lies there";
    EXPECT_EQ(EndpointClaim::claim(kEndpointSignature, claim), Outcome::claimed);
    EXPECT_TRUE(isConnectable());
}

TEST_F(EndpointTest, Claim_ByManyAtOnce_ExactlyOneGetsIt) {
    for (int round = 0; round < 20; ++round)
        expectOneClaim(resultsAtOnce(6, [](size_t) { return claimAndKeep(); }));
}

TEST_F(EndpointTest, Claim_WhereTheFolderIsRefused_Fails) {
    std::filesystem::create_directory(environment_.endpointFolder());
    chmod(environment_.endpointFolder().c_str(), 0777);
    EXPECT_EQ(claimAndLetGo(), Outcome::failed);
}

TEST_F(EndpointTest, LockThatIsASymbolicLink_IsNotFollowed) {
    ASSERT_EQ(claimAndLetGo(), Outcome::claimed);
    for (const auto& entry : std::filesystem::directory_iterator(environment_.endpointFolder())) {
        if (entry.path().extension() != ".lock") continue;
        std::filesystem::remove(entry.path());
        std::filesystem::create_symlink(environment_.folder() / "victim", entry.path());
    }
    EXPECT_EQ(claimAndLetGo(), Outcome::failed);
    EXPECT_FALSE(std::filesystem::exists(environment_.folder() / "victim"));
}

TEST_F(EndpointTest, OtherRoots_DoNotSeeEachOther) {
    EndpointClaim claim;
    ASSERT_EQ(EndpointClaim::claim(kEndpointSignature, claim), Outcome::claimed);
    TemporaryEnvironment::set("POS_SYSTEM_ROOT", environment_.makeRoot("other root"));
    EXPECT_FALSE(isConnectable());
    EXPECT_EQ(claimAndLetGo(), Outcome::claimed);
}

TEST_F(EndpointTest, LongRootAndLongRuntimeFolder_FitTheSocketAddress) {
    std::string path = "long";
    while (path.size() < 3000)
        path += "/" + std::string(200, 'x');
    TemporaryEnvironment::set("POS_SYSTEM_ROOT", environment_.makeRoot(path + "/root"));
    EndpointClaim claim;
    ASSERT_EQ(EndpointClaim::claim(kEndpointSignature, claim), Outcome::claimed);
    EXPECT_TRUE(isConnectable());
}

TEST_F(EndpointTest, Connect_FullQueue_TimesOutAtTheTick) {
    EndpointClaim claim;
    ASSERT_EQ(EndpointClaim::claim(kEndpointSignature, claim), Outcome::claimed);
    ASSERT_EQ(listen(claim.listenDescriptor(), 0), 0);
    std::vector<FileDescriptor> queued(1);
    while (connectToEndpoint(kEndpointSignature, Deadline::afterTicks(1), queued.back()) ==
           Connecting::connected) {
        queued.emplace_back();
    }
    const auto begin = std::chrono::steady_clock::now();
    FileDescriptor connection;
    EXPECT_EQ(connectToEndpoint(kEndpointSignature, Deadline::afterTicks(12), connection),
              Connecting::timedOut);
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin;
    EXPECT_GE(took.count(), 0.2);
    EXPECT_LT(took.count(), 5.2);
    EXPECT_FALSE(connection);
}

TEST_F(EndpointTest, Connect_OwnerDiesWhileTheQueueIsFull_FailsAtOnce) {
    EndpointClaim claim;
    WaitingProcess owner([&claim] {
        const Outcome outcome = EndpointClaim::claim(kEndpointSignature, claim);
        listen(claim.listenDescriptor(), 0);
        return static_cast<int>(outcome);
    });
    std::vector<FileDescriptor> queued(1);
    while (connectToEndpoint(kEndpointSignature, Deadline::afterTicks(1), queued.back()) ==
           Connecting::connected) {
        queued.emplace_back();
    }
    const pid_t waiting = fork();
    if (waiting == 0) {
        FileDescriptor connection;
        const Connecting outcome =
            connectToEndpoint(kEndpointSignature, Deadline::afterTicks(60 * 60), connection);
        _exit(outcome == Connecting::failed ? 0 : 1);
    }
    owner.kill();
    int status = -1;
    waitpid(waiting, &status, 0);
    EXPECT_EQ(status, 0);
}

TEST_F(EndpointTest, IsOwnUser_OfAConnectedPeer) {
    int ends[2];
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_SEQPACKET, 0, ends), 0);
    pid_t peer = -1;
    EXPECT_TRUE(isOwnUser(ends[0], peer));
    EXPECT_EQ(peer, getpid());
    close(ends[0]);
    close(ends[1]);
}

TEST_F(EndpointTest, Connect_ListenerOfAnotherUser_IsRefused) {
    NEEDS_ROOT("become another user");
    EndpointClaim claim;
    ASSERT_EQ(EndpointClaim::claim(kEndpointSignature, claim), Outcome::claimed);
    // A client sees the credentials of the last call of listen.
    const FileDescriptor shared(dup(claim.listenDescriptor()));
    ASSERT_EQ(inForkedProcess([&shared] {
                  if (setuid(65534) != 0) return 1;
                  return listen(shared.get(), 8) == 0 ? 0 : 2;
              }),
              0);
    EXPECT_FALSE(isConnectable());
}
