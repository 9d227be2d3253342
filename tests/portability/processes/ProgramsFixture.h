// What the tests of starting programs share: a folder with the probe, to which they add programs of their
// own.
#pragma once

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>

#include "ProbeReport.h"
#include "tests/support/TemporaryFolder.h"

class ProgramsFixture : public testing::Test {
  protected:
    ProgramsFixture() { installProbe(probe_); }

    /// Returns the path.
    std::string makeProgram(const std::string& name, const std::string& content, mode_t mode) const {
        folder_.write(name, content);
        chmod(folder_.path(name).c_str(), mode);
        return folder_.path(name);
    }

    const dovrel::test::TemporaryFolder folder_;
    const std::string probe_ = folder_.path("probe");
};
