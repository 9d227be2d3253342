// The test's side of fakeAlertHelper.cpp.
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
    /// Sets the commands for helpers that are started from now on, by this process or one of its children.
    /// Removes the notes of earlier ones.
    void follow(const std::vector<std::string>& commands) const;

    /// Helpers that are started from now on do not read their request.
    static void beDeaf();

    /// The first note of that name; "" if there is none.
    std::string note(const std::string& name) const;

    /// Waits until the helper has its request; returns its process.
    pid_t process() const;

    /// Waits until the helper has noticed that the host has closed its end.
    bool sawItsEnd() const;

  private:
    std::vector<std::string> notes() const;

    TemporaryFolder folder_;
};

}  // namespace dovrel::test
