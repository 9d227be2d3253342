// Shared by the tests of starting programs: a folder with the probe, to which tests add other programs.
#pragma once

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>

#include "ProbeReport.h"
#include "tests/support/TemporaryFolder.h"

class ProgramsFixture : public testing::Test {
  protected:
    ProgramsFixture() { installProbe(probe_); }

    /// Writes a program and returns its path.
    std::string makeProgram(const std::string& name, const std::string& content, mode_t mode) const {
        folder_.write(name, content);
        chmod(folder_.path(name).c_str(), mode);
        return folder_.path(name);
    }

    const dovrel::test::TemporaryFolder folder_;
    const std::string probe_ = folder_.path("probe");
};
