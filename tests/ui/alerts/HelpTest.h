// Fixture for what an application's bundle decides: an application with help pages around the alert host, and
// an opener of documents that notes what it was to open.
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

    /// Puts the help pages into the application, as a host has them that carries help.
    void addHelp() const;

    /// Takes the folder of a language away, or its start page.
    void removeHelp(const std::string& language) const;
    void removeStartPage(const std::string& language) const;

    /// Has the application's alerts shown by that program.
    void setHelper(const std::string& helper) const;

    /// The application's program.
    std::string program() const;

    /// The line that the application writes when started in the mode; the user's language is that of the
    /// locale.
    std::string run(const std::string& mode, const std::string& locale = "C") const;

    /// Waits for the document that was opened, and answers its path inside the application; "" when none was
    /// within half a minute.
    std::string openedPage() const;
    bool openedNothing() const;

    TemporaryFolder root_;
};

}  // namespace dovrel::test
