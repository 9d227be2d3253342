#include "portability/corefoundation/XmlPropertyList.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

#include "portability/corefoundation/TextEncoding.h"

namespace portability {
namespace {

using Kind = PropertyListNode::Kind;

constexpr int kDeepestNesting = 128;
constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kNameEnds = " \t\r\n/>";

struct NamedKind {
    std::string_view name;
    Kind kind;
};
constexpr NamedKind kElements[] = {
    {"string", Kind::string},   {"integer", Kind::integer}, {"real", Kind::real},
    {"date", Kind::date},       {"data", Kind::data},       {"array", Kind::array},
    {"dict", Kind::dictionary}, {"true", Kind::boolean},    {"false", Kind::boolean},
};

// Thrown and caught only in this file.
struct Malformed {};

struct NamedCharacter {
    std::string_view name;
    char character;
};
constexpr NamedCharacter kEntities[] = {
    {"lt", '<'}, {"gt", '>'}, {"amp", '&'}, {"quot", '"'}, {"apos", '\''}};

void appendReference(std::string_view name, std::string& text) {
    for (const NamedCharacter& entity : kEntities) {
        if (entity.name == name) {
            text += entity.character;
            return;
        }
    }
    if (name.substr(0, 1) != "#") {
        throw Malformed();
    }
    const bool isHexadecimal = name.substr(1, 1) == "x";
    const std::string digits(name.substr(isHexadecimal ? 2 : 1));
    const std::string_view allowed = isHexadecimal ? "0123456789abcdefABCDEF" : "0123456789";
    const bool isNumber =
        !digits.empty() && digits.size() <= 8 && digits.find_first_not_of(allowed) == std::string::npos;
    const unsigned long codePoint =
        isNumber ? std::strtoul(digits.c_str(), nullptr, isHexadecimal ? 16 : 10) : 0;
    if (codePoint == 0 || !appendCharacter(static_cast<std::uint32_t>(codePoint), text)) {
        throw Malformed();
    }
}

class Reader {
  public:
    explicit Reader(std::string_view document) : rest_(document) {}

    PropertyListNode readDocument() {
        take(kByteOrderMark);
        skipAround();
        const Tag root = readTag();
        if (root.name != "plist" || root.isEmpty) {
            throw Malformed();
        }
        skipAround();
        PropertyListNode value = readValue(readTag(), 1);
        skipAround();
        expectEnd("plist");
        return value;
    }

  private:
    struct Tag {
        std::string_view name;
        bool isEmpty;
    };

    bool take(std::string_view token) {
        if (rest_.substr(0, token.size()) != token) {
            return false;
        }
        rest_.remove_prefix(token.size());
        return true;
    }

    std::string_view takeUntil(std::string_view end) {
        const std::size_t length = rest_.find(end);
        if (length == std::string_view::npos) {
            throw Malformed();
        }
        const std::string_view taken = rest_.substr(0, length);
        rest_.remove_prefix(length + end.size());
        return taken;
    }

    void skipBlanks() { rest_.remove_prefix(std::min(rest_.find_first_not_of(kBlanks), rest_.size())); }

    // Skips everything that may come between elements: white space, comments, processing instructions and the
    // document type.
    void skipAround() {
        for (;;) {
            skipBlanks();
            if (take("<!--")) {
                takeUntil("-->");
            } else if (take("<?")) {
                takeUntil("?>");
            } else if (take("<!DOCTYPE")) {
                skipDocumentType();
            } else {
                return;
            }
        }
    }

    void skipDocumentType() {
        const std::size_t end = rest_.find_first_of("[>");
        if (end == std::string_view::npos || rest_[end] == '[') {
            throw Malformed();  // an internal subset could define entities that change the content
        }
        rest_.remove_prefix(end + 1);
    }

    Tag readTag() {
        if (!take("<")) {
            throw Malformed();
        }
        std::string_view inside = takeUntil(">");
        const bool isEmpty = !inside.empty() && inside.back() == '/';
        const std::string_view name = inside.substr(0, inside.find_first_of(kNameEnds));
        if (name.empty()) {
            throw Malformed();
        }
        return {name, isEmpty};
    }

    void expectEnd(std::string_view name) {
        if (!take("</") || !take(name)) {
            throw Malformed();
        }
        skipBlanks();
        if (!take(">")) {
            throw Malformed();
        }
    }

    // Reads the text of an element, including the end tag.
    std::string readText(const Tag& tag) {
        std::string text;
        while (!tag.isEmpty) {
            const std::size_t plain = rest_.find_first_of("<&");
            if (plain == std::string_view::npos) {
                throw Malformed();
            }
            text += rest_.substr(0, plain);
            rest_.remove_prefix(plain);
            if (take("&")) {
                appendReference(takeUntil(";"), text);
            } else if (take("<![CDATA[")) {
                text += takeUntil("]]>");
            } else if (take("<!--")) {
                takeUntil("-->");
            } else {
                expectEnd(tag.name);
                break;
            }
        }
        return text;
    }

    PropertyListNode readValue(const Tag& tag, int depth) {
        for (const NamedKind& element : kElements) {
            if (element.name != tag.name) {
                continue;
            }
            if (element.kind == Kind::array || element.kind == Kind::dictionary) {
                return readMembers(tag, element.kind, depth);
            }
            std::string text = readText(tag);
            return {
                element.kind, element.kind == Kind::boolean ? std::string(tag.name) : std::move(text), {}};
        }
        throw Malformed();
    }

    PropertyListNode readMembers(const Tag& tag, Kind kind, int depth) {
        if (depth >= kDeepestNesting) {
            throw Malformed();
        }
        PropertyListNode node{kind, {}, {}};
        while (!tag.isEmpty) {
            skipAround();
            if (rest_.substr(0, 2) == "</") {
                expectEnd(tag.name);
                break;
            }
            std::string key;
            if (kind == Kind::dictionary) {
                key = readKey();
            }
            PropertyListNode value = readValue(readTag(), depth + 1);
            node.members.emplace_back(std::move(key), std::move(value));
        }
        return node;
    }

    std::string readKey() {
        const Tag tag = readTag();
        if (tag.name != "key") {
            throw Malformed();
        }
        std::string key = readText(tag);
        skipAround();
        return key;
    }

    std::string_view rest_;
};

}  // namespace

bool isXmlPropertyList(std::string_view document) {
    if (document.substr(0, kByteOrderMark.size()) == kByteOrderMark) {
        document.remove_prefix(kByteOrderMark.size());
    }
    document.remove_prefix(std::min(document.find_first_not_of(kBlanks), document.size()));
    if (document.substr(0, 5) != "<?xml") {
        return document.substr(0, 6) == "<plist" || document.substr(0, 2) == "<!";
    }
    const std::string_view declaration = document.substr(0, document.find("?>"));
    return declaration.find("encoding") == std::string_view::npos ||
           declaration.find("UTF-8") != std::string_view::npos ||
           declaration.find("utf-8") != std::string_view::npos;
}

std::optional<PropertyListNode> readXmlPropertyList(std::string_view document) {
    try {
        return Reader(document).readDocument();
    } catch (const Malformed&) {
        return std::nullopt;
    }
}

}  // namespace portability
