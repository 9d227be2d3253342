// The messages between the host and the alert helper. Private to the layer.
//
// They travel through a local stream socket, which the helper has as descriptor 3. A message is one JSON
// object on one line, in UTF-8, with a line feed at its end. No line is longer than kLongestAlertLine.
//
//   host to helper, once:
//     {"version":1,"title":"…","body":"…","buttons":["Retry","Cancel"],"help":true,"host":4711}
//   helper to host:
//     {"event":"shown"}                the window is on the screen
//     {"event":"help"}                 at each press of Help; the window stays
//     {"event":"pressed","button":0}   the last message, then the helper ends
//
// If the stream ends before "pressed", the alert could not be shown, or the helper died.
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

/// In bytes of UTF-8. More text is of no use to anybody in an alert, and would take seconds to be laid out.
constexpr size_t kLongestAlertBody = size_t{16} << 10;
constexpr size_t kLongestAlertTitle = size_t{1} << 10;
constexpr size_t kLongestAlertCaption = size_t{1} << 8;

constexpr size_t kMostAlertButtons = 3;

/// An alert to be shown. All texts are UTF-8 with line feeds.
struct AlertRequest {
    std::string title;
    std::string body;
    std::vector<std::string> buttons;  ///< captions, 1 to 3. The first is the default, the last means Cancel
    bool help = false;                 ///< whether there is a Help button as well
    pid_t host = 0;                    ///< the alert closes when this process ends
};

/// Something that happens to the alert.
struct AlertEvent {
    enum class Kind { shown, help, pressed };

    Kind kind = Kind::shown;
    size_t button = 0;  ///< if `kind` is `pressed`: the index into AlertRequest::buttons
};

class AlertMessages {
  public:
    /// Returns the request as a line with its line feed. Longer texts than the sizes above are cut between
    /// two characters and end with " …". Bytes that are not UTF-8, and NUL characters, become U+FFFD. The
    /// number of buttons and the host are written as given; parseRequest refuses the wrong ones.
    static std::string compose(const AlertRequest& request);

    /// Returns the event as a line with its line feed.
    static std::string compose(const AlertEvent& event);

    /// Reads a line without its line feed. Returns nothing if the line is too long, is not JSON or not UTF-8,
    /// is of another version, lacks a member, or if a member has another type, a value out of range or a text
    /// with a NUL character or longer than the sizes above. Unknown members are ignored.
    static std::optional<AlertRequest> parseRequest(std::string_view line);

    /// The same for an event of an alert that has `buttons` buttons. The index of the pressed button must be
    /// below that number.
    static std::optional<AlertEvent> parseEvent(std::string_view line, size_t buttons);
};

}  // namespace portability
