#include "tools/Terminal.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include "tests/support/VariableChange.h"

namespace dovrel::tools {
namespace {

// The descriptor of a new terminal.
class NewTerminal {
  public:
    NewTerminal() : main_(posix_openpt(O_RDWR | O_NOCTTY)) {
        EXPECT_EQ(grantpt(main_), 0);
        EXPECT_EQ(unlockpt(main_), 0);
        terminal_ = open(ptsname(main_), O_RDWR | O_NOCTTY);
        EXPECT_GE(terminal_, 0);
    }
    NewTerminal(const NewTerminal&) = delete;
    NewTerminal& operator=(const NewTerminal&) = delete;
    ~NewTerminal() {
        close(terminal_);
        close(main_);
    }

    int descriptor() const { return terminal_; }

  private:
    int main_;
    int terminal_;
};

TEST(Terminal, Colours_AreShownOnATerminalUnlessAVariableForbidsThem) {
    const NewTerminal terminal;
    const VariableChange type("TERM", "xterm");
    const VariableChange unset("NO_COLOR", nullptr);
    EXPECT_TRUE(showsColours(terminal.descriptor()));
    const VariableChange empty("NO_COLOR", "");
    EXPECT_TRUE(showsColours(terminal.descriptor()));
    const VariableChange set("NO_COLOR", "1");
    EXPECT_FALSE(showsColours(terminal.descriptor()));
    const VariableChange unsetAgain("NO_COLOR", nullptr);
    const VariableChange dumb("TERM", "dumb");
    EXPECT_FALSE(showsColours(terminal.descriptor()));
}

TEST(Terminal, FileOrClosedDescriptor_HasNoColours) {
    const int file = open("/dev/null", O_WRONLY);
    EXPECT_FALSE(isTerminal(file));
    EXPECT_FALSE(showsColours(file));
    close(file);
    EXPECT_FALSE(showsColours(-1));
}

TEST(Terminal, Paint_AddsTheEscapeSequencesOnlyIfTheyAreShown) {
    EXPECT_EQ(paint("text", Colour::red, true), "\x1b[31mtext\x1b[0m");
    EXPECT_EQ(paint("text", Colour::red, false), "text");
}

}  // namespace
}  // namespace dovrel::tools
