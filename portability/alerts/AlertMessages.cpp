#include "portability/alerts/AlertMessages.h"

#include <cstdint>
#include <limits>
#include <nlohmann/json.hpp>
#include <utility>

namespace portability {
namespace {

using nlohmann::json;

constexpr unsigned kVersion = 1;
constexpr char kCutMark[] = " …";

struct EventName {
    AlertEvent::Kind kind;
    const char* name;
};
constexpr EventName kEventNames[] = {{AlertEvent::Kind::shown, "shown"},
                                     {AlertEvent::Kind::help, "help"},
                                     {AlertEvent::Kind::pressed, "pressed"}};

bool continuesCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

std::string written(const json& value) {
    return value.dump(-1, ' ', false, json::error_handler_t::replace);
}

std::string wellFormed(const std::string& text) {
    return json::parse(written(text)).get<std::string>();
}

// Cuts a text that is too long between two characters. The text must be valid UTF-8, so that the loop finds
// the start of a character.
std::string cutTo(size_t longest, const std::string& text) {
    if (text.size() <= longest) return text;
    size_t end = longest - (sizeof kCutMark - 1);
    while (continuesCharacter(text[end]))
        --end;
    return text.substr(0, end) + kCutMark;
}

// Replaces NUL characters by U+FFFD, because the window classes take C strings, which end at a NUL character.
std::string withoutNul(const std::string& text) {
    std::string result;
    for (const char byte : text) {
        if (byte != '\0') {
            result += byte;
        } else {
            result += "\uFFFD";
        }
    }
    return result;
}

std::string shownText(size_t longest, const std::string& text) {
    // Replacing invalid bytes never shortens the text. So the limit plus one byte is enough to see that the
    // text is too long.
    return cutTo(longest, withoutNul(wellFormed(text.substr(0, longest + 1))));
}

std::string toLine(const json& message) {
    return written(message) + '\n';
}

// Parses a line. Returns a discarded value if the line is rejected. Callers must move nested values and not
// copy them, because copying is recursive and a hostile value is nested deeply.
json parsed(std::string_view line) {
    // The parser treats a NUL character as the end and would ignore the text after it.
    if (line.size() > kLongestAlertLine || line.find('\0') != std::string_view::npos)
        return json(json::value_t::discarded);
    return json::parse(line, nullptr, false);
}

// Returns the member, or null if it is missing or `message` is not an object.
const json& member(const json& message, const char* name) {
    static const json missing;
    const auto found = message.find(name);
    return found != message.end() ? *found : missing;
}

std::optional<std::string> readText(const json& value, size_t longest) {
    if (!value.is_string()) return std::nullopt;
    std::string text = value.get<std::string>();
    if (text.size() > longest || text.find('\0') != std::string::npos) return std::nullopt;
    return text;
}

std::optional<uint64_t> readNumber(const json& value, uint64_t lowest, uint64_t highest) {
    if (!value.is_number_unsigned()) return std::nullopt;
    const auto number = value.get<uint64_t>();
    if (number < lowest || number > highest) return std::nullopt;
    return number;
}

std::optional<std::vector<std::string>> readCaptions(const json& value) {
    if (!value.is_array() || value.empty() || value.size() > kMostAlertButtons) return std::nullopt;
    std::vector<std::string> captions;
    for (const json& element : value) {
        auto caption = readText(element, kLongestAlertCaption);
        if (!caption) return std::nullopt;
        captions.push_back(std::move(*caption));
    }
    return captions;
}

}  // namespace

std::string AlertMessages::compose(const AlertRequest& request) {
    json buttons = json::array();
    for (const std::string& caption : request.buttons)
        buttons.push_back(shownText(kLongestAlertCaption, caption));
    return toLine({{"version", kVersion},
                   {"title", shownText(kLongestAlertTitle, request.title)},
                   {"body", shownText(kLongestAlertBody, request.body)},
                   {"buttons", buttons},
                   {"help", request.help},
                   {"host", request.host}});
}

std::string AlertMessages::compose(const AlertEvent& event) {
    json message = json::object();
    for (const EventName& known : kEventNames) {
        if (known.kind == event.kind) message["event"] = known.name;
    }
    if (event.kind == AlertEvent::Kind::pressed) message["button"] = event.button;
    return toLine(message);
}

std::optional<AlertRequest> AlertMessages::parseRequest(std::string_view line) {
    const json message = parsed(line);
    const json& help = member(message, "help");
    if (!readNumber(member(message, "version"), kVersion, kVersion) || !help.is_boolean())
        return std::nullopt;
    auto title = readText(member(message, "title"), kLongestAlertTitle);
    auto body = readText(member(message, "body"), kLongestAlertBody);
    auto buttons = readCaptions(member(message, "buttons"));
    const auto host = readNumber(member(message, "host"), 1, std::numeric_limits<pid_t>::max());
    if (!title || !body || !buttons || !host) return std::nullopt;
    return AlertRequest{std::move(*title), std::move(*body), std::move(*buttons), help.get<bool>(),
                        static_cast<pid_t>(*host)};
}

std::optional<AlertEvent> AlertMessages::parseEvent(std::string_view line, size_t buttons) {
    const json message = parsed(line);
    const json& event = member(message, "event");
    for (const EventName& known : kEventNames) {
        if (event != known.name) continue;
        if (known.kind != AlertEvent::Kind::pressed) return AlertEvent{known.kind, 0};
        const auto button = readNumber(member(message, "button"), 0, std::numeric_limits<size_t>::max());
        if (!button || *button >= buttons) return std::nullopt;
        return AlertEvent{known.kind, static_cast<size_t>(*button)};
    }
    return std::nullopt;
}

}  // namespace portability
