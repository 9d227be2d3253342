// Shared by the tests of the process table: applications whose program is the probe, and finding processes.
#pragma once

#include <gtest/gtest.h>
#include <sys/types.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "portability/processes/DetachedProcess.h"
#include "portability/processes/ProcessTable.h"
#include "tests/portability/processes/ProbeReport.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/VariableChange.h"

class ProcessTableTest : public testing::Test {
  protected:
    // The application of these tests, below a system root. No other program on the machine is called
    // "Probed". Never run a program with the name of a real application here, because tests of other builds
    // would take it for the real one.
    static constexpr char kApplication[] = "Library/Application Support/Example/Probed.app";
    static constexpr char kProgram[] = "Library/Application Support/Example/Probed.app/Contents/MacOS/Probed";

    /// Creates a bundle in the folder. Its Info.plist names the executable and the signature.
    void makeApplication(const std::string& bundle, const std::string& executable = "Probed",
                         const std::string& signature = "\?\?\?\?") const {
        folder_.write(bundle + "/Contents/Info.plist",
                      "<plist version=\"1.0\"><dict><key>CFBundleExecutable</key><string>" + executable +
                          "</string><key>CFBundlePackageType</key><string>APPL</string>"
                          "<key>CFBundleSignature</key><string>" +
                          signature + "</string></dict></plist>");
    }

    /// Installs a probe at `file` in the folder and starts it with these descriptors.
    std::unique_ptr<ProbeReport> run(const std::string& file,
                                     const std::vector<int>& descriptors = {}) const {
        installProbe(folder_.path(file));
        return start(file, descriptors);
    }

    /// Starts the program that is already at `file` in the folder.
    std::unique_ptr<ProbeReport> start(const std::string& file,
                                       const std::vector<int>& descriptors = {}) const {
        const std::string program = folder_.path(file);
        EXPECT_EQ(portability::startDetached({program, {program}, {}, descriptors}), 0);
        return std::make_unique<ProbeReport>(program);
    }

    static std::optional<portability::Process> findListed(pid_t id) {
        for (const portability::Process& process : portability::listProcesses()) {
            if (process.id == id) {
                return process;
            }
        }
        return std::nullopt;
    }

    bool isListedUnder(const std::string& root, pid_t id) const {
        const VariableChange change("POS_SYSTEM_ROOT", root.empty() ? "/" : folder_.path(root).c_str());
        return findListed(id).has_value();
    }

    const dovrel::test::TemporaryFolder folder_;
};
