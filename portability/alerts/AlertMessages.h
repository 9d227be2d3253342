// The messages between the host and the alert helper. Private to the layer.
//
// They are sent through a local stream socket, which is descriptor 3 in the helper. A message is one JSON
// object on one line, in UTF-8, and ends with a line feed. No line is longer than kLongestAlertLine.
//
//   host to helper, once:
//     {"version":1,"title":"…","body":"…","buttons":["Retry","Cancel"],"help":true,"host":4711}
//   helper to host:
//     {"event":"shown"}                the window is on the screen
//     {"event":"help"}                 each time the user presses Help; the window stays open
//     {"event":"pressed","button":0}   the last message; then the helper exits
//
// If the stream ends before "pressed", the alert could not be shown or the helper crashed.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace portability {

/// In bytes, without the line feed.
constexpr size_t kLongestAlertLine = size_t{1} << 20;

/// In bytes of UTF-8. Longer texts would take seconds to lay out and are not useful in an alert.
constexpr size_t kLongestAlertBody = size_t{16} << 10;
constexpr size_t kLongestAlertTitle = size_t{1} << 10;
constexpr size_t kLongestAlertCaption = size_t{1} << 8;

constexpr size_t kMostAlertButtons = 3;

/// A request to show an alert. All texts are UTF-8; lines are separated by line feeds.
struct AlertRequest {
    std::string title;
    std::string body;
    std::vector<std::string> buttons;  ///< captions, 1 to 3. The first is the default, the last means Cancel
    bool help = false;                 ///< whether there is also a Help button
    pid_t host = 0;                    ///< the alert closes when this process exits
};

/// An event of an alert.
struct AlertEvent {
    enum class Kind { shown, help, pressed };

    Kind kind = Kind::shown;
    size_t button = 0;  ///< if `kind` is `pressed`: the index into AlertRequest::buttons
};

class AlertMessages {
  public:
    /// Returns the request as a line that ends with a line feed. Texts that are longer than the limits above
    /// are cut between two characters and end with " …". Bytes that are not UTF-8, and NUL characters, become
    /// U+FFFD. The number of buttons and the process id of the host are not checked here; parseRequest
    /// rejects wrong ones.
    static std::string compose(const AlertRequest& request);

    /// Returns the event as a line that ends with a line feed.
    static std::string compose(const AlertEvent& event);

    /// Reads a line without its line feed. Unknown members are ignored. Returns nothing in these cases:
    /// - The line is too long, is not JSON or is not UTF-8.
    /// - It has another version or a member is missing.
    /// - A member has a wrong type or a value out of range.
    /// - A text contains a NUL character or is longer than the limits above.
    static std::optional<AlertRequest> parseRequest(std::string_view line);

    /// The same for an event of an alert with `buttons` buttons. The index of the pressed button must be less
    /// than that number.
    static std::optional<AlertEvent> parseEvent(std::string_view line, size_t buttons);
};

}  // namespace portability
