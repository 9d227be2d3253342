// The control tool of the development server, as a test uses it.
#pragma once

#include <map>
#include <string>

namespace dovrel::test {

class ServerControl {
  public:
    /// Sends settings to the running server of the current root. Fails the test where it cannot be reached or
    /// finds a problem in them.
    static void send(const std::string& settings);

    /// What the server says about itself: "process", "applications", "objects". Empty where it cannot be
    /// reached.
    static std::map<std::string, int> status();

    /// Asks the server to quit.
    static void quit();

  private:
    static int run(const std::string& option, const std::string& input, std::string& output);
};

}  // namespace dovrel::test
