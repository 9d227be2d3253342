// AlertConversation: one alert, which a helper process shows. Private to the layer.
#pragma once

#include <cstddef>
#include <optional>

#include "portability/alerts/AlertLines.h"
#include "portability/alerts/AlertMessages.h"
#include "portability/posix/Deadline.h"
#include "portability/posix/FileDescriptor.h"
#include "portability/processes/ChildProcess.h"

namespace portability {

/// The longest time until the window is on the screen, in ticks of 1/60 s. After that the alert has failed,
/// so that a helper without a working screen cannot block the host forever.
constexpr long kLongestAlertStart = 60 * 60;

/// The longest wait for the end of the helper after the alert, in ticks of 1/60 s, so that a helper that does
/// not end cannot block the host.
constexpr long kLongestAlertEnd = 2 * 60;

/// The helper is not a child of the host. This also holds for a host that becomes the parent of descendants
/// that have lost their parents (the first process of a container, or a child subreaper).
class AlertConversation {
  public:
    /// Starts the helper and sends the request to it. If that fails, the first call
    /// of next() returns nothing.
    explicit AlertConversation(const AlertRequest& request, long longestStart = kLongestAlertStart);

    /// Closes the alert and waits until the helper has ended, at most kLongestAlertEnd.
    ~AlertConversation();
    AlertConversation(const AlertConversation&) = delete;
    AlertConversation& operator=(const AlertConversation&) = delete;

    /// Waits for the next event. Returns nothing if the helper could not be started, has ended, did not show
    /// the alert within `longestStart`, or sent something that is not an event. After that, and after a
    /// `pressed` event, next() must not be called again.
    std::optional<AlertEvent> next();

  private:
    bool start();
    bool send(const std::string& bytes);
    bool receive();
    bool wait(short events) const;

    const size_t buttons_;
    Deadline deadline_;
    FileDescriptor socket_;
    ChildProcess helper_;
    AlertLines lines_;
};

/// Shows the alert, waits until a button is pressed, and returns the button's index. Returns nothing
/// if the alert could not be shown or ended without an answer. Each time the user presses Help, it
/// calls `onHelp(context)` on this thread; `onHelp` must not throw. Any thread, several at the same
/// time. Does not throw.
std::optional<size_t> runAlert(const AlertRequest& request, void (*onHelp)(void*), void* context) noexcept;

}  // namespace portability
