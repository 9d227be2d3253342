// Endpoints that a launched application takes over from its launcher.
#include <fcntl.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <utility>

#include "EndpointTest.h"
#include "tests/support/MountNamespace.h"
#include "tests/support/NeedsRoot.h"
#include "tests/support/Processes.h"

using namespace portability;

TEST_F(EndpointTest, Inherited_DescriptorsAreAdoptedAndTheLockGoesAlong) {
    auto claim = std::make_unique<EndpointClaim>();
    ASSERT_EQ(EndpointClaim::claim(kEndpointSignature, *claim), Outcome::claimed);
    // As after exec: the descriptors have other numbers and are not close-on-exec.
    const int listening = dup(claim->listenDescriptor());
    const int lock = dup(claim->lockDescriptor());
    WaitingProcess launched([listening, lock] {
        std::string entry = EndpointClaim::inheritanceEntry(kEndpointSignature, listening, lock);
        putenv(entry.data());
        EndpointClaim adopted;
        if (!EndpointClaim::adoptInherited(kEndpointSignature, adopted)) return 1;
        if (adopted.listenDescriptor() != listening || adopted.lockDescriptor() != lock) return 2;
        if ((fcntl(listening, F_GETFD) & fcntl(lock, F_GETFD) & FD_CLOEXEC) == 0) return 3;
        if (getenv(kAnnouncement) != nullptr) return 4;
        static EndpointClaim kept;
        kept = std::move(adopted);
        return 0;
    });
    close(listening);
    close(lock);
    ASSERT_EQ(launched.result(), 0);
    claim.reset();
    EXPECT_EQ(claimAndLetGo(), Outcome::inUse) << "the launched process has it now";
    EXPECT_TRUE(isConnectable());
    launched.kill();
    EXPECT_EQ(claimAndLetGo(), Outcome::claimed);
}

TEST_F(EndpointTest, Inherited_FilesAreRemovedByTheLaunchedProcess) {
    auto claim = std::make_unique<EndpointClaim>();
    ASSERT_EQ(EndpointClaim::claim(kEndpointSignature, *claim), Outcome::claimed);
    const int listening = dup(claim->listenDescriptor());
    const int lock = dup(claim->lockDescriptor());
    WaitingProcess launched([listening, lock] {
        std::string entry = EndpointClaim::inheritanceEntry(kEndpointSignature, listening, lock);
        putenv(entry.data());
        EndpointClaim adopted;
        if (!EndpointClaim::adoptInherited(kEndpointSignature, adopted)) return 1;
        adopted.withdraw();
        return 0;
    });
    close(listening);
    close(lock);
    ASSERT_EQ(launched.result(), 0);
    EXPECT_TRUE(std::filesystem::is_empty(environment_.endpointFolder()));
}

TEST_F(EndpointTest, Inherited_NotAnnounced_IsFalse) {
    EndpointClaim claim;
    EXPECT_FALSE(EndpointClaim::adoptInherited(kEndpointSignature, claim));
}

TEST_F(EndpointTest, Inherited_ForAnotherSignature_IsLeftForIt) {
    EndpointClaim claim;
    ASSERT_EQ(EndpointClaim::claim(kEndpointSignature, claim), Outcome::claimed);
    std::string entry =
        EndpointClaim::inheritanceEntry(kEndpointSignature, claim.listenDescriptor(), claim.lockDescriptor());
    putenv(entry.data());
    EndpointClaim other;
    EXPECT_FALSE(EndpointClaim::adoptInherited('OTHR', other));
    EXPECT_NE(getenv(kAnnouncement), nullptr);
    unsetenv(kAnnouncement);
}

TEST_F(EndpointTest, Inherited_DescriptorsThatAreSomethingElse_AreRefused) {
    EndpointClaim claim;
    ASSERT_EQ(EndpointClaim::claim(kEndpointSignature, claim), Outcome::claimed);
    const std::pair<int, int> wrong[] = {{claim.lockDescriptor(), claim.listenDescriptor()},
                                         {0, claim.lockDescriptor()},
                                         {claim.listenDescriptor(), 0},
                                         {claim.listenDescriptor(), 999},
                                         {-1, -1}};
    for (const auto& numbers : wrong) {
        const std::string entry =
            EndpointClaim::inheritanceEntry(kEndpointSignature, numbers.first, numbers.second);
        setenv(kAnnouncement, entry.substr(entry.find('=') + 1).c_str(), 1);
        EndpointClaim adopted;
        EXPECT_FALSE(EndpointClaim::adoptInherited(kEndpointSignature, adopted)) << entry;
        EXPECT_EQ(adopted.listenDescriptor(), -1);
    }
}

TEST_F(EndpointTest, Inherited_LockFileThatIsNotThatOfTheEndpoint_IsRefused) {
    EndpointClaim claim;
    ASSERT_EQ(EndpointClaim::claim(kEndpointSignature, claim), Outcome::claimed);
    const FileDescriptor other(
        open((environment_.endpointFolder() / "other.lock").c_str(), O_RDWR | O_CREAT, 0600));
    ASSERT_TRUE(other);
    const std::string entry =
        EndpointClaim::inheritanceEntry(kEndpointSignature, dup(claim.listenDescriptor()), dup(other.get()));
    setenv(kAnnouncement, entry.substr(entry.find('=') + 1).c_str(), 1);
    EndpointClaim adopted;
    EXPECT_FALSE(EndpointClaim::adoptInherited(kEndpointSignature, adopted));
    EXPECT_EQ(adopted.listenDescriptor(), -1);
}

// A host with another user's rights than its caller's passes these rights on, and the system then removes
// variables from the program's environment. This test makes such a launch: the real user differs from the
// effective one. POS_SYSTEM_ROOT is ignored then, so the root is that of the system, with an empty /tmp.
TEST_F(EndpointTest, Inherited_FromASetIdHost_IsAdopted) {
    NEEDS_ROOT("become two users at once, and to make a mount namespace");
    constexpr uid_t kCaller = 65534;
    constexpr uid_t kOwner = 65533;
    EXPECT_EQ(inForkedProcess([] {
                  unsetenv("POS_SYSTEM_ROOT");
                  unsetenv("XDG_RUNTIME_DIR");
                  const bool isReady = enterMountNamespace() && mountEmptyFolder("/tmp", "1777") &&
                                       setresuid(kCaller, kOwner, kOwner) == 0;
                  EndpointClaim claim;
                  if (!isReady || EndpointClaim::claim(kEndpointSignature, claim) != Outcome::claimed)
                      return 10;
                  std::string entry = EndpointClaim::inheritanceEntry(
                      kEndpointSignature, dup(claim.listenDescriptor()), dup(claim.lockDescriptor()));
                  putenv(entry.data());
                  execl(ADOPTION_PROBE, ADOPTION_PROBE, static_cast<char*>(nullptr));
                  return 11;
              }),
              0);
}

TEST_F(EndpointTest, Inherited_MalformedAnnouncement_IsRefused) {
    for (const char* text : {"", ":", "456E6450", "456E6450:3", "456E6450:3:4x", " 456E6450:3:4",
                             "456e6450:3:4", "456E6450:99999999999999:4"}) {
        setenv(kAnnouncement, text, 1);
        EndpointClaim adopted;
        EXPECT_FALSE(EndpointClaim::adoptInherited(kEndpointSignature, adopted)) << text;
    }
}
