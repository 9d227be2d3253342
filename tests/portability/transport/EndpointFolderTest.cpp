#include "portability/transport/EndpointFolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <filesystem>
#include <set>

#include "FailingFstat.h"
#include "portability/posix/SystemRoot.h"
#include "tests/support/NeedsRoot.h"
#include "tests/support/OrdinaryUser.h"
#include "tests/support/Processes.h"
#include "tests/support/TemporaryEnvironment.h"

using namespace portability;

namespace {

namespace files = std::filesystem;

const std::string kUser = std::to_string(geteuid());
constexpr uid_t kOtherUser = 65534;

class EndpointFolderTest : public testing::Test {
  protected:
    static std::vector<EndpointPlace> places() { return endpointPlaces(systemRoot()); }

    // Returns the state of the folder for new endpoints.
    static FolderState open(FileDescriptor& folder) { return openEndpointFolder(places().back(), folder); }
    static FolderState open() {
        FileDescriptor folder;
        return open(folder);
    }
    static FileDescriptor make() { return makeEndpointFolder(places()); }

    files::path folder() const { return environment_.endpointFolder(); }

    // Creates the folder that the root has for a logged-in user.
    files::path makeUserFolder() const { return environment_.makeFolder("root/run/user/" + kUser); }

    static files::path toPath(const FileDescriptor& folder) {
        return files::read_symlink("/proc/self/fd/" + std::to_string(folder.get()));
    }

    static mode_t readMode(const files::path& path) {
        struct stat status = {};
        EXPECT_EQ(lstat(path.c_str(), &status), 0) << path;
        return status.st_mode & 07777;
    }

    static void giveAway(const files::path& path) {
        ASSERT_EQ(lchown(path.c_str(), kOtherUser, kOtherUser), 0);
    }

    TemporaryEnvironment environment_;
};

std::vector<std::string> listPaths(const std::vector<EndpointPlace>& places) {
    std::vector<std::string> paths;
    for (const EndpointPlace& place : places)
        paths.push_back(place.parent + '/' + place.name);
    return paths;
}

}  // namespace

TEST_F(EndpointFolderTest, Places_AreTheRuntimeFolderThatOfTheUserAndTmp) {
    TemporaryEnvironment::set("XDG_RUNTIME_DIR", "/some/where");
    EXPECT_EQ(listPaths(endpointPlaces("/")),
              (std::vector<std::string>{"/some/where/pos-events", "/run/user/" + kUser + "/pos-events",
                                        "/tmp/pos-events-" + kUser}));
}

TEST_F(EndpointFolderTest, Places_WithoutAnAbsoluteRuntimeFolderOfItsOwn_AreTheOtherTwo) {
    const std::vector<std::string> others = {"/run/user/" + kUser + "/pos-events",
                                             "/tmp/pos-events-" + kUser};
    for (const std::string& folder : {std::string(), std::string("relative/path"), "/run/user/" + kUser}) {
        TemporaryEnvironment::set("XDG_RUNTIME_DIR", folder);
        EXPECT_EQ(listPaths(endpointPlaces("/")), others) << folder;
    }
    unsetenv("XDG_RUNTIME_DIR");
    EXPECT_EQ(listPaths(endpointPlaces("/")), others);
}

TEST_F(EndpointFolderTest, Places_OfARootWithFoldersOfItsOwn_AreInThem) {
    unsetenv("XDG_RUNTIME_DIR");
    const std::string root = environment_.makeFolder("bare");
    EXPECT_EQ(listPaths(endpointPlaces(root)), listPaths(endpointPlaces("/")));
    environment_.makeFolder("bare/tmp");
    environment_.makeFolder("bare/run/user");
    EXPECT_EQ(listPaths(endpointPlaces(root)),
              (std::vector<std::string>{root + "/run/user/" + kUser + "/pos-events",
                                        root + "/tmp/pos-events-" + kUser}));
}

TEST_F(EndpointFolderTest, Open_BeforeItWasMade_IsAbsent) {
    EXPECT_EQ(open(), FolderState::absent);
    EXPECT_FALSE(files::exists(folder())) << "to look is not to make";
}

TEST_F(EndpointFolderTest, Make_IsInTmpAndForThisUserOnly) {
    makeUserFolder();
    const FileDescriptor made = make();
    ASSERT_TRUE(made);
    EXPECT_EQ(toPath(made), files::canonical(folder()));
    EXPECT_EQ(readMode(folder()), 0700u);
    EXPECT_NE(fcntl(made.get(), F_GETFD) & FD_CLOEXEC, 0);
    EXPECT_TRUE(make()) << "it may be there already";
    EXPECT_EQ(open(), FolderState::open);
}

TEST_F(EndpointFolderTest, Make_WhateverTheUmask_IsOpenToItsUser) {
    for (const mode_t mask : {0177, 0277, 0777}) {
        const mode_t before = umask(mask);
        EXPECT_TRUE(make()) << mask;
        umask(before);
        EXPECT_EQ(readMode(folder()), 0700u) << mask;
        files::remove(folder());
    }
}

TEST_F(EndpointFolderTest, FolderThatAnUmaskHasNarrowed_IsCorrected) {
    for (const mode_t mode : {0000, 0400, 0500, 0600}) {
        files::create_directory(folder());
        ASSERT_EQ(chmod(folder().c_str(), mode), 0);
        EXPECT_EQ(open(), FolderState::open) << mode;
        EXPECT_EQ(readMode(folder()), 0700u) << mode;
        files::remove(folder());
    }
}

TEST_F(EndpointFolderTest, FolderThatAnUmaskHasNarrowed_IsCorrectedByAnOrdinaryUser) {
    ASSERT_EQ(chmod(environment_.folder().c_str(), 0755), 0);
    for (const char* opened : {"root", "root/tmp"})
        ASSERT_EQ(chmod((environment_.folder() / opened).c_str(), 0777), 0);
    EXPECT_TRUE(holdsForOrdinaryUser([] {
        umask(0777);
        const FileDescriptor made = make();
        const bool isUsable = made && mkdirat(made.get(), "inside", 0700) == 0;
        return isUsable && unlinkat(made.get(), "inside", AT_REMOVEDIR) == 0;
    }));
}

TEST_F(EndpointFolderTest, SymbolicLink_IsNotFollowed) {
    const files::path elsewhere = environment_.makeFolder("elsewhere");
    files::create_directory_symlink(elsewhere, folder());
    EXPECT_EQ(open(), FolderState::failed);
    EXPECT_FALSE(make());
    EXPECT_TRUE(files::is_empty(elsewhere));
}

TEST_F(EndpointFolderTest, FolderThatLetsOthersIn_IsRefused) {
    ASSERT_TRUE(make());
    for (const mode_t mode : {0710, 0701, 0770, 0777}) {
        ASSERT_EQ(chmod(folder().c_str(), mode), 0);
        EXPECT_EQ(open(), FolderState::failed) << mode;
        EXPECT_EQ(errno, EPERM);
        EXPECT_FALSE(make()) << mode;
        EXPECT_EQ(readMode(folder()), mode) << "what others may have done there stays where it can be seen";
    }
}

TEST_F(EndpointFolderTest, FileInItsPlace_IsRefused) {
    files::copy_file("/proc/self/cmdline", folder());
    EXPECT_EQ(open(), FolderState::failed);
    EXPECT_EQ(errno, ENOTDIR);
    EXPECT_FALSE(make());
}

TEST_F(EndpointFolderTest, FolderOfAnotherUser_CountsAsAbsentAndTheNextPlaceIsUsed) {
    NEEDS_ROOT("give a folder to another user");
    ASSERT_TRUE(make());
    giveAway(folder());
    EXPECT_EQ(open(), FolderState::absent);
    EXPECT_EQ(toPath(make()), environment_.runtimeFolder() / "pos-events");
    const files::path userFolder = makeUserFolder();
    EXPECT_EQ(toPath(make()), userFolder / "pos-events") << "before that of a single environment";
    EXPECT_EQ(readMode(userFolder / "pos-events"), 0700u);
}

TEST_F(EndpointFolderTest, Make_WhereTheSystemAllowsNoFolder_UsesTheNextPlace) {
    const FileDescriptor made = makeEndpointFolder(
        {{environment_.runtimeFolder(), "pos-events", true}, {"/proc", "pos-events", false}});
    EXPECT_EQ(toPath(made), environment_.runtimeFolder() / "pos-events");
}

TEST_F(EndpointFolderTest, FileOrLinkOfAnotherUserInItsPlace_CountsAsAbsent) {
    NEEDS_ROOT("give a file to another user");
    const files::path userFolder = makeUserFolder();
    files::copy_file("/proc/self/cmdline", folder());
    giveAway(folder());
    EXPECT_EQ(open(), FolderState::absent);
    EXPECT_EQ(toPath(make()), userFolder / "pos-events");
    files::remove(folder());
    files::create_directory_symlink(environment_.makeFolder("elsewhere"), folder());
    giveAway(folder());
    EXPECT_EQ(open(), FolderState::absent);
    EXPECT_EQ(toPath(make()), userFolder / "pos-events");
}

TEST_F(EndpointFolderTest, RuntimeFolderOfAnotherUser_IsNotUsed) {
    NEEDS_ROOT("give a folder to another user");
    ASSERT_TRUE(make());
    giveAway(folder());
    giveAway(environment_.runtimeFolder());
    EXPECT_FALSE(make());
    EXPECT_FALSE(files::exists(environment_.runtimeFolder() / "pos-events"));
}

TEST_F(EndpointFolderTest, TooManyOpenFiles_AreAFailureAndNotAnotherPlace) {
    makeUserFolder();
    ASSERT_TRUE(make());
    const auto makeWith = [](int freeDescriptors) {
        return inForkedProcess([freeDescriptors] {
            std::vector<FileDescriptor> free;
            for (int i = 0; i < freeDescriptors; ++i)
                free.emplace_back(::open("/dev/null", O_RDONLY));
            const FileDescriptor next(::open("/dev/null", O_RDONLY));
            const rlimit limit = {static_cast<rlim_t>(next.get()), static_cast<rlim_t>(next.get())};
            setrlimit(RLIMIT_NOFILE, &limit);
            free.clear();
            const FileDescriptor made = make();
            return made ? 0 : errno;
        });
    };
    EXPECT_EQ(makeWith(0), EMFILE);
    EXPECT_EQ(makeWith(1), EMFILE);
    EXPECT_EQ(makeWith(2), 0);
    EXPECT_FALSE(files::exists(environment_.folder() / "root/run/user" / kUser / "pos-events"));
    EXPECT_FALSE(files::exists(environment_.runtimeFolder() / "pos-events"));
}

TEST_F(EndpointFolderTest, FactsThatCannotBeHad_AreAFailureAndNotAnotherPlace) {
    makeUserFolder();
    ASSERT_TRUE(make());
    int number = 1;
    for (;; ++number) {
        const FailingFstat failing(number);
        const FileDescriptor made = make();
        if (!FailingFstat::hasFailed()) break;
        EXPECT_FALSE(made) << number;
        EXPECT_EQ(errno, EIO) << number;
    }
    EXPECT_GT(number, 1) << "no call was there to fail";
    EXPECT_FALSE(files::exists(environment_.folder() / "root/run/user" / kUser / "pos-events"));
    EXPECT_FALSE(files::exists(environment_.runtimeFolder() / "pos-events"));
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
