#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <string>

#include "platform/files/FileUtilities.h"
#include "tests/platform/files/FileUtilitiesFixture.h"
#include "tests/platform/files/ScratchFolder.h"
#include "tests/support/FileSizeLimit.h"
#include "tests/support/SignalAction.h"
#include "tests/support/VariableChange.h"

namespace dovrel {
namespace {

using test::ScratchFolder;

class CopyFileWithShell : public test::FileUtilitiesFixture {};

TEST_F(CopyFileWithShell, CopiesForAllUsers) {
    const std::string source = folder_.write("source", "content");
    const std::string destination = folder_.path("destination");
    EXPECT_TRUE(copyFileWithShell(source.c_str(), destination.c_str(), false));
    EXPECT_EQ(ScratchFolder::readFile(destination), "content");
    EXPECT_EQ(ScratchFolder::readPermissions(destination), 0777u);
    EXPECT_EQ(ScratchFolder::readPermissions(source), 0600u) << "the source is nobody else's business";
}

TEST_F(CopyFileWithShell, OnlyIfMissingOntoAnExistingFile_LeavesItUntouched) {
    const std::string source = folder_.write("source", "new");
    const std::string destination = folder_.write("destination", "old");
    EXPECT_FALSE(copyFileWithShell(source.c_str(), destination.c_str(), true));
    EXPECT_EQ(ScratchFolder::readFile(destination), "old");
    EXPECT_EQ(ScratchFolder::readPermissions(destination), 0600u);
}

TEST_F(CopyFileWithShell, OnlyIfMissingOntoNothing_Copies) {
    const std::string source = folder_.write("source", "new");
    const std::string destination = folder_.path("destination");
    EXPECT_TRUE(copyFileWithShell(source.c_str(), destination.c_str(), true));
    EXPECT_EQ(ScratchFolder::readFile(destination), "new");
}

TEST_F(CopyFileWithShell, OntoAnExistingFile_ReplacesIt) {
    const std::string source = folder_.write("source", "new");
    const std::string destination = folder_.write("destination", "old");
    EXPECT_TRUE(copyFileWithShell(source.c_str(), destination.c_str(), false));
    EXPECT_EQ(ScratchFolder::readFile(destination), "new");
}

TEST_F(CopyFileWithShell, RunsCpWithForceSourceAndDestination) {
    const std::string script =
        folder_.write("bin/cp", "#!/bin/sh\nprintf '%s\\n' \"$@\" >\"$0.arguments\"\n");
    ScratchFolder::setPermissions(script, 0700);
    const VariableChange path("PATH", folder_.path("bin:/usr/bin:/bin").c_str());
    const std::string source = folder_.write("a source", "content");
    const std::string destination = folder_.path("a destination");
    EXPECT_TRUE(copyFileWithShell(source.c_str(), destination.c_str(), false));
    EXPECT_EQ(ScratchFolder::readFile(script + ".arguments"), "-f\n" + source + "\n" + destination + "\n");
}

TEST_F(CopyFileWithShell, WithANullPath_IsFalse) {
    const std::string path = folder_.write("source", "x");
    EXPECT_FALSE(copyFileWithShell(nullptr, path.c_str(), false));
    EXPECT_FALSE(copyFileWithShell(path.c_str(), nullptr, false));
    EXPECT_FALSE(copyFileWithShell(path.c_str(), nullptr, true));
}

TEST_F(CopyFileWithShell, OfAMissingFile_IsStillTrue) {
    testing::internal::CaptureStderr();
    EXPECT_TRUE(
        copyFileWithShell(folder_.path("missing").c_str(), folder_.path("destination").c_str(), false));
    testing::internal::GetCapturedStderr();
    EXPECT_FALSE(std::filesystem::exists(folder_.path("destination")));
}

TEST_F(CopyFileWithShell, WithQuotesAndCommandsInThePaths_TakesThemAsNames) {
    const std::string source = folder_.write("it's $(touch no) `touch no` \"; touch no", "content");
    const std::string destination = folder_.path("'; touch 'no");
    EXPECT_TRUE(copyFileWithShell(source.c_str(), destination.c_str(), false));
    EXPECT_EQ(ScratchFolder::readFile(destination), "content");
    EXPECT_FALSE(std::filesystem::exists("no")) << "in " << std::filesystem::current_path();
}

TEST_F(CopyFileWithShell, IntoAFolder_LeavesTheFoldersPermissions) {
    const std::string source = folder_.write("source", "content");
    const std::string target = folder_.path("target");
    ASSERT_TRUE(std::filesystem::create_directory(target));
    EXPECT_TRUE(copyFileWithShell(source.c_str(), target.c_str(), false));
    EXPECT_EQ(ScratchFolder::readFile(target + "/source"), "content");
    EXPECT_EQ(ScratchFolder::readPermissions(target), 0700u);
    EXPECT_EQ(ScratchFolder::readPermissions(target + "/source"), 0777u) << "the copy is what was created";
}

TEST_F(CopyFileWithShell, ForAHostThatIgnoresTheEndsOfItsChildren_OpensTheCopyToAllUsers) {
    const test::SignalAction ignored(SIGCHLD, SIG_IGN);
    const std::string source = folder_.write("source", std::string(200'000, 'x'));
    EXPECT_TRUE(copyFileWithShell(source.c_str(), folder_.path("copy").c_str(), false));
    EXPECT_EQ(ScratchFolder::readFile(folder_.path("copy")), std::string(200'000, 'x'));
    EXPECT_EQ(ScratchFolder::readPermissions(folder_.path("copy")), 0777u);
}

TEST_F(CopyFileWithShell, ThatFails_LeavesThePermissionsOfTheDestination) {
    const std::string old = folder_.write("destination", "old");
    const std::string longer = folder_.write("longer", "none of the old");
    for (const auto action : {SIG_DFL, SIG_IGN}) {
        const test::SignalAction ofChildren(SIGCHLD, action);
        testing::internal::CaptureStderr();
        EXPECT_TRUE(copyFileWithShell(folder_.path("missing").c_str(), old.c_str(), false));
        {
            const test::FileSizeLimit limit(0);
            EXPECT_TRUE(copyFileWithShell(longer.c_str(), old.c_str(), false));
        }
        testing::internal::GetCapturedStderr();
        EXPECT_EQ(ScratchFolder::readPermissions(old), 0600u);
    }
}

}  // namespace
}  // namespace dovrel
