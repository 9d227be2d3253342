// Fixture for the system report: a system root of its own in which components can be installed.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "tests/support/TemporaryFolder.h"
#include "ui/information/Component.h"

namespace dovrel::test {

/// A dictionary in the XML form, and what may be in it.
std::string xmlList(const std::string& entries);
std::string textEntry(const std::string& key, const std::string& value);

/// A dictionary with one text in the binary form.
std::string binaryListOf(const std::string& key, const std::string& value);

class InstalledComponents : public testing::Test {
  protected:
    InstalledComponents();
    ~InstalledComponents() override;

    /// Writes the system's version list.
    void writeSystemVersion(const std::string& list) const;

    /// Writes the property list of the component's bundle.
    void writeInfo(const Component& component, const std::string& list) const;

    void install(const Component& component, const std::string& version, const std::string& installer) const;

    /// Installs all five; versions are "1.1" to "1.5" in the order of the report.
    void installAll(const std::string& installer) const;

    /// Where a path of the platform lies.
    std::string inRoot(const std::string& platformPath) const { return root_.path() + platformPath; }

    TemporaryFolder root_;
};

}  // namespace dovrel::test
