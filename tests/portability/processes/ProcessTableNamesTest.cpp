// Which processes are listed under the name of an application: only the application's own processes.
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <functional>

#include "ProcessTableTest.h"
#include "portability/transport/Endpoint.h"
#include "tests/support/MountNamespace.h"
#include "tests/support/NeedsRoot.h"
#include "tests/support/OrdinaryUser.h"
#include "tests/support/WaitUntil.h"

namespace {

namespace files = std::filesystem;
using dovrel::test::waitUntil;
using portability::EndpointClaim;

class ProcessTableNames : public ProcessTableTest {
  protected:
    ProcessTableNames() { makeApplication("root/" + std::string(kApplication)); }

    // Returns how many processes are listed under the application's name.
    int listedByName() const {
        const VariableChange change("POS_SYSTEM_ROOT", folder_.path("root").c_str());
        const auto processes = portability::listProcesses();
        return static_cast<int>(
            std::count_if(processes.begin(), processes.end(),
                          [](const portability::Process& process) { return process.name == "Probed"; }));
    }

    // Creates a /tmp in the root, so that its endpoints are not visible to other roots.
    void claimEndpoint(OSType signature, EndpointClaim& endpoint) const {
        files::create_directory(folder_.path("root/tmp"));
        const VariableChange change("POS_SYSTEM_ROOT", folder_.path("root").c_str());
        EXPECT_EQ(EndpointClaim::claim(signature, endpoint), EndpointClaim::Outcome::claimed);
    }

    // Runs `file` and expects that it is not listed under the application's name.
    void expectNotListed(const std::string& file) const {
        const auto probe = run(file);
        EXPECT_EQ(listedByName(), 0) << file;
        EXPECT_TRUE(portability::findProcess(probe->id())) << "it runs all the same";
    }
};

}  // namespace

TEST_F(ProcessTableNames, ApplicationsOfTwoRoots_AreEachListedOnlyUnderTheirOwnRoot) {
    makeApplication("other/" + std::string(kApplication));
    const auto first = run("root/" + std::string(kProgram));
    const auto second = run("other/" + std::string(kProgram));
    EXPECT_TRUE(isListedUnder("root", first->id()));
    EXPECT_FALSE(isListedUnder("root", second->id()));
    EXPECT_TRUE(isListedUnder("other", second->id()));
    EXPECT_FALSE(isListedUnder("other", first->id()));
    EXPECT_FALSE(isListedUnder("", first->id()));
    EXPECT_FALSE(isListedUnder("", second->id()));
}

TEST_F(ProcessTableNames, RootGivenThroughASymbolicLink_IsTheSameRoot) {
    const auto probe = run("root/" + std::string(kProgram));
    files::create_directory_symlink(folder_.path("root"), folder_.path("link"));
    EXPECT_TRUE(isListedUnder("link", probe->id()));
}

TEST_F(ProcessTableNames, ApplicationInAFolderThroughASymbolicLink_IsListed) {
    files::rename(folder_.path("root/Library/Application Support/Example"), folder_.path("moved"));
    files::create_directory_symlink(folder_.path("moved"),
                                    folder_.path("root/Library/Application Support/Example"));
    const auto probe = run("root/" + std::string(kProgram));
    EXPECT_TRUE(isListedUnder("root", probe->id()));
}

TEST_F(ProcessTableNames, ExecutableThatIsASymbolicLink_IsListed) {
    installProbe(folder_.path("elsewhere/Probed"));
    files::create_directories(files::path(folder_.path("root/" + std::string(kProgram))).parent_path());
    files::create_symlink(folder_.path("elsewhere/Probed"), folder_.path("root/" + std::string(kProgram)));
    const auto probe = start("root/" + std::string(kProgram));
    EXPECT_TRUE(isListedUnder("root", probe->id()));
}

TEST_F(ProcessTableNames, ApplicationWhoseFileIsDeletedOrReplaced_KeepsItsNameAndItsRoot) {
    const std::string program = "root/" + std::string(kProgram);
    const auto probe = run(program);
    files::remove(folder_.path(program));
    EXPECT_TRUE(isListedUnder("root", probe->id()));
    EXPECT_FALSE(isListedUnder("other", probe->id()));
    EXPECT_EQ(portability::findProcess(probe->id())->name, "Probed");
    installProbe(folder_.path(program));
    EXPECT_TRUE(isListedUnder("root", probe->id()));
    EXPECT_EQ(listedByName(), 1);
}

TEST_F(ProcessTableNames, ProgramOfTheNameOutsideOfBundles_IsListedUnlessTheRootHasSuchAnApplication) {
    const auto probe = run("elsewhere/Probed");
    EXPECT_FALSE(isListedUnder("root", probe->id()));
    EXPECT_TRUE(isListedUnder("other", probe->id()));
}

TEST_F(ProcessTableNames, OtherPrograms_AreListedUnderEveryRoot) {
    const auto probe = run("root/Library/tools/NotProbed");
    EXPECT_TRUE(isListedUnder("root", probe->id()));
    EXPECT_TRUE(isListedUnder("other", probe->id()));
    EXPECT_TRUE(isListedUnder("", probe->id()));
}

TEST_F(ProcessTableNames, CopyOfTheApplicationElsewhere_IsNotListed) {
    makeApplication("elsewhere/Probed.app");
    expectNotListed("elsewhere/Probed.app/Contents/MacOS/Probed");
    makeApplication("root/Elsewhere/Probed.app");
    expectNotListed("root/Elsewhere/Probed.app/Contents/MacOS/Probed");
}

TEST_F(ProcessTableNames, OtherProgramInsideTheApplication_IsNotListed) {
    expectNotListed("root/" + std::string(kApplication) + "/Contents/Resources/Probed");
    expectNotListed("root/" + std::string(kApplication) + "/Contents/MacOS/old/Probed");
    expectNotListed("root/" + std::string(kApplication) + "/Probed");
}

TEST_F(ProcessTableNames, FileOfTheNameThatIsNotTheExecutable_IsNotListed) {
    makeApplication("root/" + std::string(kApplication), "NewName");
    expectNotListed("root/" + std::string(kProgram));
}

TEST_F(ProcessTableNames, ProgramOfTheNameInAnotherApplicationOfTheRoot_IsNotListed) {
    makeApplication("root/Applications/Other.app");
    expectNotListed("root/Applications/Other.app/Contents/MacOS/Probed");
}

TEST_F(ProcessTableNames, CopiesOfOneApplicationInTwoPlacesOfTheRoot_AreBothListed) {
    makeApplication("root/" + std::string(kApplication), "Probed", "PrBd");
    makeApplication("root/Applications/Probed.app", "Probed", "PrBd");
    EndpointClaim endpoint;
    claimEndpoint('PrBd', endpoint);
    const std::vector<int> lock = {endpoint.lockDescriptor()};
    const auto first = run("root/" + std::string(kProgram), lock);
    const auto second = run("root/Applications/Probed.app/Contents/MacOS/Probed", lock);
    const auto other = run("root/Applications/Probed.app/Contents/Resources/Probed", lock);
    EXPECT_TRUE(isListedUnder("root", first->id()));
    EXPECT_TRUE(isListedUnder("root", second->id()));
    EXPECT_FALSE(isListedUnder("root", other->id()));
}

TEST_F(ProcessTableNames, ApplicationsOfOneNameAndTwoSignatures_AreNotListed) {
    makeApplication("root/" + std::string(kApplication), "Probed", "PrBd");
    makeApplication("root/Applications/Probed.app", "Probed", "PrBe");
    expectNotListed("root/" + std::string(kProgram));
    expectNotListed("root/Applications/Probed.app/Contents/MacOS/Probed");
}

TEST_F(ProcessTableNames, ApplicationsOfOneNameWithoutASignature_AreNotListed) {
    const auto probe = run("root/" + std::string(kProgram));
    EXPECT_EQ(listedByName(), 1);
    makeApplication("root/Applications/Probed.app");
    expectNotListed("root/Applications/Probed.app/Contents/MacOS/Probed");
}

TEST_F(ProcessTableNames, ApplicationWithoutAReadableInfo_IsListed) {
    folder_.write("root/" + std::string(kApplication) + "/Contents/Info.plist", "damaged");
    const auto probe = run("root/" + std::string(kProgram));
    EXPECT_EQ(listedByName(), 1);
}

TEST_F(ProcessTableNames, ScriptOfTheName_IsNotListed) {
    folder_.write("elsewhere/Probed", "#!/bin/sh\n: >\"$0.runs\"\nread -r nothing\n");
    ASSERT_EQ(chmod(folder_.path("elsewhere/Probed").c_str(), 0755), 0);
    int input[2];
    ASSERT_EQ(pipe(input), 0);
    const pid_t script = fork();
    if (script == 0) {
        dup2(input[0], STDIN_FILENO);
        close(input[1]);
        execl(folder_.path("elsewhere/Probed").c_str(), "Probed", static_cast<char*>(nullptr));
        _exit(127);
    }
    EXPECT_TRUE(waitUntil([this] { return files::exists(folder_.path("elsewhere/Probed.runs")); }));
    EXPECT_EQ(listedByName(), 0);
    close(input[0]);
    close(input[1]);
    waitpid(script, nullptr, 0);
}

// The program's path equals that of the application, but in a container (here a mount
// namespace) that path is another file.
TEST_F(ProcessTableNames, ProgramUnderTheSamePathInAnotherFileSystem_IsNotListed) {
    NEEDS_ROOT("make a mount namespace");
    const std::string program = folder_.path("root/" + std::string(kProgram));
    const std::string application = folder_.path("root/" + std::string(kApplication));
    int ready[2];
    ASSERT_EQ(pipe2(ready, O_CLOEXEC), 0);
    const pid_t process = fork();
    if (process == 0) {
        if (!enterMountNamespace() || !mountEmptyFolder(application, "0755")) _exit(1);
        makeApplication("root/" + std::string(kApplication));
        installProbe(program);
        // The pipe closes when the program runs.
        execl(program.c_str(), program.c_str(), static_cast<char*>(nullptr));
        _exit(1);
    }
    close(ready[1]);
    char end;
    EXPECT_EQ(read(ready[0], &end, 1), 0);
    close(ready[0]);
    const auto found = portability::findProcess(process);
    EXPECT_TRUE(found.has_value());
    // From inside a chroot the system shows the paths of other namespaces with those of the folders around it.
    if (found && !isChroot()) {
        EXPECT_EQ(found->file, program);
    }
    EXPECT_EQ(listedByName(), 0);
    kill(process, SIGKILL);
    waitpid(process, nullptr, 0);
}

// The system hides the path of an unreadable program even from its own user, so its application is unknown.
TEST_F(ProcessTableNames, ProgramThatMayNotBeRead_IsNotListed) {
    NEEDS_ROOT("make a program that its user may not read");
    const std::string program = folder_.path("elsewhere/Probed");
    files::create_directories(folder_.path("elsewhere"));
    files::copy_file("/bin/sleep", program);
    ASSERT_EQ(chmod(program.c_str(), 0711), 0);
    ASSERT_EQ(chmod(folder_.path().c_str(), 0755), 0);
    EXPECT_TRUE(holdsForOrdinaryUser([&] {
        int ready[2];
        if (pipe2(ready, O_CLOEXEC) != 0) return false;
        const pid_t process = fork();
        if (process == 0) {
            execl(program.c_str(), program.c_str(), "600", static_cast<char*>(nullptr));
            _exit(1);
        }
        close(ready[1]);
        char end;
        const bool runs = read(ready[0], &end, 1) == 0 && portability::findProcess(process).has_value();
        const bool isHidden = listedByName() == 0;
        kill(process, SIGKILL);
        waitpid(process, nullptr, 0);
        return runs && isHidden;
    }));
}

TEST_F(ProcessTableNames, ApplicationWithASignature_IsListedWhileItHasItsEndpoint) {
    makeApplication("root/" + std::string(kApplication), "Probed", "PrBd");
    EndpointClaim endpoint;
    claimEndpoint('PrBd', endpoint);
    const auto probe = run("root/" + std::string(kProgram), {endpoint.lockDescriptor()});
    EXPECT_EQ(listedByName(), 1);
    endpoint.withdraw();
    EXPECT_EQ(listedByName(), 0) << "it is ending, and others may launch the next";
    EXPECT_TRUE(portability::findProcess(probe->id()));
}

TEST_F(ProcessTableNames, ApplicationWithASignatureWhoseEndpointIsAnothers_IsNotListed) {
    makeApplication("root/" + std::string(kApplication), "Probed", "PrBd");
    const auto probe = run("root/" + std::string(kProgram));
    EXPECT_EQ(listedByName(), 0);
    EndpointClaim endpoint;
    claimEndpoint('PrBd', endpoint);
    EXPECT_EQ(listedByName(), 0);
}
