// Fuzz target for the messages between the host and the alert helper, in both directions. The first byte of the
// input selects the direction and the number of buttons, the second the size of the pieces in which the
// rest arrives.
//
// The lines do not depend on the pieces. What the reader accepts keeps its limits, and is the same message after it
// is written and read again. Any text that a host can give becomes a line that the helper accepts.

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "FuzzTarget.h"
#include "portability/alerts/AlertLines.h"
#include "portability/alerts/AlertMessages.h"

namespace {

using namespace portability;

// Returns the lines of a stream that arrives in pieces of that size.
std::vector<std::string> linesInPieces(const std::string& stream, size_t piece) {
    AlertLines lines;
    std::vector<std::string> found;
    bool isUsable = true;
    for (size_t at = 0; at < stream.size(); at += piece) {
        const size_t count = std::min(piece, stream.size() - at);
        const bool isAdded = lines.append(stream.data() + at, count);
        FUZZ_CHECK(isUsable || !isAdded);
        isUsable = isAdded;
        while (const std::optional<std::string> line = lines.next())
            found.push_back(*line);
    }
    return found;
}

std::vector<std::string> splitLines(const std::string& stream) {
    std::vector<std::string> found;
    for (size_t begin = 0, end; (end = stream.find('\n', begin)) != std::string::npos; begin = end + 1)
        found.push_back(stream.substr(begin, end - begin));
    return found;
}

bool isSame(const AlertRequest& one, const AlertRequest& other) {
    return one.title == other.title && one.body == other.body && one.buttons == other.buttons &&
           one.help == other.help && one.host == other.host;
}

std::string withoutLineFeed(const std::string& line) {
    FUZZ_CHECK(!line.empty() && line.find('\n') == line.size() - 1 && line.size() <= kLongestAlertLine + 1);
    return line.substr(0, line.size() - 1);
}

bool isShown(const std::string& text, size_t longest) {
    return text.size() <= longest && text.find('\0') == std::string::npos;
}

void checkRequest(const std::string& line) {
    const std::optional<AlertRequest> request = AlertMessages::parseRequest(line);
    if (!request) return;
    FUZZ_CHECK(isShown(request->title, kLongestAlertTitle) && isShown(request->body, kLongestAlertBody));
    FUZZ_CHECK(!request->buttons.empty() && request->buttons.size() <= kMostAlertButtons &&
               request->host > 0);
    for (const std::string& caption : request->buttons)
        FUZZ_CHECK(isShown(caption, kLongestAlertCaption));
    const std::optional<AlertRequest> again =
        AlertMessages::parseRequest(withoutLineFeed(AlertMessages::compose(*request)));
    FUZZ_CHECK(again && isSame(*again, *request));
}

void checkEvent(const std::string& line, size_t buttons) {
    const std::optional<AlertEvent> event = AlertMessages::parseEvent(line, buttons);
    if (!event) return;
    FUZZ_CHECK(event->kind != AlertEvent::Kind::pressed || event->button < buttons);
    const std::optional<AlertEvent> again =
        AlertMessages::parseEvent(withoutLineFeed(AlertMessages::compose(*event)), buttons);
    FUZZ_CHECK(again && again->kind == event->kind && again->button == event->button);
}

// The host's texts can contain any bytes.
void checkTexts(const std::string& text, size_t buttons) {
    const size_t half = text.size() / 2;
    const AlertRequest request{text.substr(0, half), text.substr(half),
                               std::vector<std::string>(buttons, text), true, 1};
    const std::optional<AlertRequest> shown =
        AlertMessages::parseRequest(withoutLineFeed(AlertMessages::compose(request)));
    FUZZ_CHECK(shown && shown->buttons.size() == buttons);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 2) return 0;
    const size_t buttons = data[0] / 3 % kMostAlertButtons + 1;
    const size_t piece = size_t{data[1]} + 1;
    const std::string stream(reinterpret_cast<const char*>(data) + 2, size - 2);
    const std::vector<std::string> lines = linesInPieces(stream, piece);
    if (stream.size() <= kLongestAlertLine) FUZZ_CHECK(lines == splitLines(stream));
    for (const std::string& line : splitLines(stream + '\n')) {
        if (data[0] % 3 == 0) checkRequest(line);
        if (data[0] % 3 == 1) checkEvent(line, buttons);
    }
    if (data[0] % 3 == 2) checkTexts(stream, buttons);
    return 0;
}
