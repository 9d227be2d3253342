#include "events/EndpointFolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <set>

#include "TemporaryEnvironment.h"
#include "tests/support/NeedsRoot.h"

using namespace portability;

namespace {

class EndpointFolderTest : public testing::Test {
  protected:
    std::filesystem::path place() const { return environment_.runtimeFolder() / "pos-events"; }

    static std::filesystem::path pathOf(const FileDescriptor& folder) {
        return std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(folder.get()));
    }

    TemporaryEnvironment environment_;
};

}  // namespace

TEST_F(EndpointFolderTest, Open_BeforeItWasMade_IsEmpty) {
    EXPECT_FALSE(openEndpointFolder());
    EXPECT_FALSE(std::filesystem::exists(place())) << "to look is not to make";
}

TEST_F(EndpointFolderTest, Make_IsInTheRuntimeFolderAndForThisUserOnly) {
    const FileDescriptor made = makeEndpointFolder();
    ASSERT_TRUE(made);
    EXPECT_EQ(pathOf(made), std::filesystem::canonical(place()));
    struct stat status;
    ASSERT_EQ(fstat(made.get(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0700u);
    EXPECT_EQ(status.st_uid, geteuid());
    EXPECT_NE(fcntl(made.get(), F_GETFD) & FD_CLOEXEC, 0);
    EXPECT_TRUE(makeEndpointFolder()) << "it may be there already";
    EXPECT_TRUE(openEndpointFolder());
}

TEST_F(EndpointFolderTest, SymbolicLink_IsNotFollowed) {
    std::filesystem::create_directory_symlink(environment_.makeFolder("elsewhere"), place());
    EXPECT_FALSE(openEndpointFolder());
    EXPECT_FALSE(makeEndpointFolder());
}

TEST_F(EndpointFolderTest, FolderThatLetsOthersIn_IsRefused) {
    ASSERT_TRUE(makeEndpointFolder());
    for (const mode_t mode : {0710, 0701, 0770, 0777}) {
        ASSERT_EQ(chmod(place().c_str(), mode), 0);
        EXPECT_FALSE(openEndpointFolder()) << mode;
        EXPECT_EQ(errno, EPERM);
        EXPECT_FALSE(makeEndpointFolder()) << mode;
    }
}

TEST_F(EndpointFolderTest, FileInItsPlace_IsRefused) {
    std::filesystem::copy_file("/proc/self/cmdline", place());
    EXPECT_FALSE(makeEndpointFolder());
}

TEST_F(EndpointFolderTest, FolderOfAnotherUser_IsRefused) {
    NEEDS_ROOT("give a folder to another user");
    ASSERT_TRUE(makeEndpointFolder());
    ASSERT_EQ(chown(place().c_str(), 65534, 65534), 0);
    EXPECT_FALSE(openEndpointFolder());
    EXPECT_FALSE(makeEndpointFolder());
}

TEST_F(EndpointFolderTest, WithoutRuntimeFolder_IsOfThisUserInTemporaryFolder) {
    const std::filesystem::path fallback = "/tmp/pos-events-" + std::to_string(geteuid());
    const bool wasThere = std::filesystem::exists(fallback);
    for (const char* unusable : {"", "relative/path", "/does/not/exist", "/proc/self/cmdline"}) {
        setenv("XDG_RUNTIME_DIR", unusable, 1);
        const FileDescriptor made = makeEndpointFolder();
        ASSERT_TRUE(made) << unusable;
        EXPECT_EQ(pathOf(made), fallback) << unusable;
    }
    std::error_code inUse;
    if (!wasThere) std::filesystem::remove(fallback, inUse);
}

TEST(EndpointFolder, EndpointName_DiffersByRootAndSignature) {
    std::set<std::string> names;
    for (const char* root : {"/", "/a", "/b", "/a/b"}) {
        for (const OSType signature : {OSType{'RBJT'}, OSType{'TEST'}, OSType{0}, OSType{0xFFFFFFFF}}) {
            names.insert(endpointName(root, signature));
        }
    }
    EXPECT_EQ(names.size(), 16u);
}

TEST(EndpointFolder, EndpointName_IsAPlainShortFileName) {
    const std::string name = endpointName("/" + std::string(10000, 'x'), '/../');
    EXPECT_EQ(name.find_first_not_of("0123456789abcdef-"), std::string::npos);
    EXPECT_LT(name.size(), 40u);
}
