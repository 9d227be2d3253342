// One alert, shown by a helper process. Private to the layer.
#pragma once

#include <cstddef>
#include <optional>

#include "portability/alerts/AlertLines.h"
#include "portability/alerts/AlertMessages.h"
#include "portability/posix/Deadline.h"
#include "portability/posix/FileDescriptor.h"
#include "portability/processes/ChildProcess.h"

namespace portability {

/// In ticks of 1/60 s: a helper that cannot get its window onto the screen must not hold the host forever.
constexpr long kLongestAlertStart = 60 * 60;

/// As long as a helper takes to notice that its alert is over; one that does not notice must not hold the host.
constexpr long kLongestAlertEnd = 2 * 60;

/// The host never finds the helper among its children, not even one that takes over those of its descendants
/// that have lost their parents (the first process of a container, a child subreaper).
class AlertConversation {
  public:
    /// Starts the helper and sends it the request. Whether that went well is seen at the first event.
    explicit AlertConversation(const AlertRequest& request, long longestStart = kLongestAlertStart);

    /// Closes the alert and waits until its helper has ended, at most for kLongestAlertEnd.
    ~AlertConversation();
    AlertConversation(const AlertConversation&) = delete;
    AlertConversation& operator=(const AlertConversation&) = delete;

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
    ChildProcess helper_;
    AlertLines lines_;
};

/// Shows the alert and waits until a button is pressed; returns its index. Returns nothing if the alert
/// could not be shown or was not answered. `onHelp(context)` is called on this thread at each press of Help;
/// it must not throw. Any thread, several at a time; does not throw.
std::optional<size_t> runAlert(const AlertRequest& request, void (*onHelp)(void*), void* context) noexcept;

}  // namespace portability
