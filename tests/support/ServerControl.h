// Runs the command-line tool to control the development server of a test.
#pragma once

#include <map>
#include <string>

namespace dovrel::test {

class ServerControl {
  public:
    /// Returns the path of the tool: DOVREL_TEST_TOOL if that is set, otherwise the tool of this build.
    static std::string toolPath();

    /// Sends settings to the running server of the current root. Fails the test if the server cannot be
    /// reached or finds a problem in the settings.
    static void send(const std::string& settings);

    /// Returns what the server reports about itself: "process", "applications", "objects". Returns an empty
    /// map if the server cannot be reached.
    static std::map<std::string, int> status();

    /// Asks the server to quit.
    static void quit();

  private:
    static int run(const std::string& arguments, const std::string& input, std::string& output);
};

}  // namespace dovrel::test
