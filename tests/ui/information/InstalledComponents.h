// Fixture for the system report: a separate system root in which components can be installed.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "tests/support/TemporaryFolder.h"
#include "ui/information/Component.h"

namespace dovrel::test {

/// Returns a dictionary in the XML format; the functions below it return entries.
std::string xmlList(const std::string& entries);
std::string textEntry(const std::string& key, const std::string& value);

/// Returns a dictionary with one text in the binary format.
std::string makeBinaryList(const std::string& key, const std::string& value);

class InstalledComponents : public testing::Test {
  protected:
    InstalledComponents();
    ~InstalledComponents() override;

    /// Writes the system's version list.
    void writeSystemVersion(const std::string& list) const;

    /// Writes the property list of the component's bundle.
    void writeInfo(const Component& component, const std::string& list) const;

    void install(const Component& component, const std::string& version, const std::string& installer) const;

    /// Installs all five components with the versions "1.1" to "1.5", in the order of the report.
    void installAll(const std::string& installer) const;

    /// Returns where the platform path is in this system.
    std::string inRoot(const std::string& platformPath) const { return root_.path() + platformPath; }

    TemporaryFolder root_;
};

}  // namespace dovrel::test
