// Fixture for the parts of an alert that depend on the application's bundle. It has an application with help
// pages around the alert host, and a document opener that notes the document.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

namespace dovrel::test {

class HelpTest : public testing::Test {
  protected:
    HelpTest();

    /// Writes the application's property list with that identifier.
    void setIdentifier(const std::string& identifier) const;

    /// Adds the help pages to the application, where a host with help has them.
    void addHelp() const;

    /// Removes the folder of a language, or its start page.
    void removeHelp(const std::string& language) const;
    void removeStartPage(const std::string& language) const;

    /// Makes the program `helper` show the application's alerts.
    void setHelper(const std::string& helper) const;

    /// Returns the path of the application's program.
    std::string program() const;

    /// Starts the application in the mode and returns the line that it writes. The
    /// locale sets the user's language.
    std::string run(const std::string& mode, const std::string& locale = "C") const;

    /// Waits for the opened document and returns its path inside the application; "" if none
    /// was opened within a minute.
    std::string openedPage() const;
    bool openedNothing() const;

    TemporaryFolder root_;
};

}  // namespace dovrel::test
