// One alert, shown by a helper process. Private to the layer.
#pragma once

#include <cstddef>
#include <optional>

#include "portability/alerts/AlertLines.h"
#include "portability/alerts/AlertMessages.h"
#include "portability/posix/Deadline.h"
#include "portability/posix/FileDescriptor.h"

namespace portability {

/// In ticks of 1/60 s: a helper that cannot get its window onto the screen must not hold the host forever.
constexpr long kLongestAlertStart = 60 * 60;

/// The helper is not a child of this process. It closes the alert when the object goes.
class AlertConversation {
  public:
    /// Starts the helper and sends it the request. Whether that went well is seen at the first event.
    explicit AlertConversation(const AlertRequest& request, long longestStart = kLongestAlertStart);

    /// Waits for the next event. Returns nothing if there will be none: the helper could not be started or
    /// has ended, did not show the alert within `longestStart`, or sent something that is not an event. Then,
    /// and after `pressed`, it must not be called again.
    std::optional<AlertEvent> next();

  private:
    bool start();
    bool send(const std::string& bytes);
    bool receive();
    bool wait(short events) const;

    const size_t buttons_;
    Deadline deadline_;
    FileDescriptor socket_;
    AlertLines lines_;
};

/// Shows the alert and waits until a button is pressed; returns its index. Returns nothing if the alert
/// could not be shown or was not answered. `onHelp(context)` is called on this thread at each press of Help;
/// it must not throw. Any thread, several at a time; does not throw.
std::optional<size_t> runAlert(const AlertRequest& request, void (*onHelp)(void*), void* context) noexcept;

}  // namespace portability
