// What the tests of the process table share: applications whose program is the probe, and looking for
// processes.
#pragma once

#include <gtest/gtest.h>
#include <sys/types.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "portability/processes/DetachedProcess.h"
#include "portability/processes/ProcessTable.h"
#include "tests/portability/processes/ProbeReport.h"
#include "tests/portability/support/VariableChange.h"
#include "tests/support/TemporaryFolder.h"

class ProcessTableTest : public testing::Test {
  protected:
    // The application of these tests, below a system root. No other program on the machine is called
    // "Probed", and none called like a real application is run here: tests of other builds would take it for
    // that.
    static constexpr char kApplication[] = "Library/Application Support/Example/Probed.app";
    static constexpr char kProgram[] = "Library/Application Support/Example/Probed.app/Contents/MacOS/Probed";

    /// Makes a bundle in the folder whose Info.plist names the executable and the signature.
    void makeApplication(const std::string& bundle, const std::string& executable = "Probed",
                         const std::string& signature = "\?\?\?\?") const {
        folder_.write(bundle + "/Contents/Info.plist",
                      "<plist version=\"1.0\"><dict><key>CFBundleExecutable</key><string>" + executable +
                          "</string><key>CFBundlePackageType</key><string>APPL</string>"
                          "<key>CFBundleSignature</key><string>" +
                          signature + "</string></dict></plist>");
    }

    /// A probe that runs from `file` in the folder.
    std::unique_ptr<ProbeReport> run(const std::string& file) const {
        installProbe(folder_.path(file));
        return start(file);
    }

    /// Starts what lies at `file` in the folder already.
    std::unique_ptr<ProbeReport> start(const std::string& file) const {
        const std::string program = folder_.path(file);
        EXPECT_EQ(portability::startDetached({program, {program}, {}, {}}), 0);
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
