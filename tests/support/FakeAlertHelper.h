// Controls the program of fakeAlertHelper.cpp from a test.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "tests/support/TemporaryFolder.h"

namespace dovrel::test {

// Commands that send an event.
constexpr char kShownEvent[] = "send {\"event\":\"shown\"}";
constexpr char kHelpEvent[] = "send {\"event\":\"help\"}";
std::string pressedEvent(int button);

class FakeAlertHelper {
  public:
    /// Sets the commands for all helpers that this process or its children start from now on, and
    /// deletes the notes of earlier helpers.
    void follow(const std::vector<std::string>& commands) const;

    /// Makes helpers that are started from now on ignore their request.
    static void beDeaf();

    /// Returns the first note of that name; "" if there is none.
    std::string note(const std::string& name) const;

    /// Waits until the helper has read its request; returns the helper's process identifier.
    pid_t process() const;

    /// Waits until the helper has noticed that the host closed its end of the connection.
    bool sawItsEnd() const;

  private:
    std::vector<std::string> notes() const;

    TemporaryFolder folder_;
};

}  // namespace dovrel::test
