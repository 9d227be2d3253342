#include "portability/corefoundation/OldStylePropertyList.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "portability/corefoundation/TextEncoding.h"

namespace portability {
namespace {

constexpr int kDeepestNesting = 128;
constexpr std::string_view kPlainCharacters =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_$/:.-";
constexpr std::string_view kHexDigits = "0123456789ABCDEFabcdef";

// Thrown and caught only in this file.
struct Malformed {};

class Reader {
  public:
    explicit Reader(std::string_view document) : rest_(document) {}

    ObjectHolder readDocument() {
        ObjectHolder value = readValue(1);
        expectEnd();
        return value;
    }

    ObjectHolder readStrings() {
        ObjectHolder dictionary = readMembers(1);
        expectEnd();
        return dictionary;
    }

  private:
    bool take(std::string_view token) {
        if (rest_.substr(0, token.size()) != token) {
            return false;
        }
        rest_.remove_prefix(token.size());
        return true;
    }

    void expect(std::string_view token) {
        skipBlanks();
        if (!take(token)) {
            throw Malformed();
        }
    }

    char takeCharacter() {
        if (rest_.empty()) {
            throw Malformed();
        }
        const char character = rest_.front();
        rest_.remove_prefix(1);
        return character;
    }

    // Skips white space and comments. The document may end inside a line comment.
    void skipBlanks() {
        for (;;) {
            rest_.remove_prefix(std::min(rest_.find_first_not_of(" \t\r\n\f\v"), rest_.size()));
            if (take("//")) {
                rest_.remove_prefix(std::min(rest_.find_first_of("\r\n"), rest_.size()));
            } else if (take("/*")) {
                const std::size_t end = rest_.find("*/");
                if (end == std::string_view::npos) {
                    throw Malformed();
                }
                rest_.remove_prefix(end + 2);
            } else {
                return;
            }
        }
    }

    void expectEnd() {
        skipBlanks();
        if (!rest_.empty()) {
            throw Malformed();
        }
    }

    ObjectHolder readValue(int depth) {
        if (depth > kDeepestNesting) {
            throw Malformed();
        }
        skipBlanks();
        if (take("{")) {
            ObjectHolder dictionary = readMembers(depth);
            expect("}");
            return dictionary;
        }
        if (take("(")) {
            return readArray(depth);
        }
        return take("<") ? readData() : readString();
    }

    ObjectHolder readMembers(int depth) {
        __CFDictionary::Values members;
        for (skipBlanks(); !rest_.empty() && rest_.front() != '}'; skipBlanks()) {
            const ObjectHolder key = readString();
            const auto* const name = static_cast<const __CFString*>(key.get());
            skipBlanks();
            ObjectHolder value = take("=") ? readValue(depth + 1) : ObjectHolder(new __CFString(name->units));
            expect(";");
            members.insert_or_assign(name->units, std::move(value));
        }
        return ObjectHolder(new __CFDictionary(std::move(members)));
    }

    ObjectHolder readArray(int depth) {
        __CFArray::Values values;
        skipBlanks();
        while (!take(")")) {
            values.push_back(readValue(depth + 1));
            skipBlanks();
            if (!take(",") && rest_.substr(0, 1) != ")") {
                throw Malformed();
            }
            skipBlanks();
        }
        return ObjectHolder(new __CFArray(std::move(values)));
    }

    ObjectHolder readData() {
        std::string digits;
        for (skipBlanks(); !take(">"); skipBlanks()) {
            digits += takeCharacter();
        }
        if (digits.size() % 2 != 0 || digits.find_first_not_of(kHexDigits) != std::string::npos) {
            throw Malformed();
        }
        std::string bytes;
        for (std::size_t at = 0; at < digits.size(); at += 2) {
            bytes += static_cast<char>(std::stoi(digits.substr(at, 2), nullptr, 16));
        }
        return ObjectHolder(new __CFData(std::move(bytes)));
    }

    ObjectHolder readString() {
        for (const char quote : {'"', '\''}) {
            if (take(std::string_view(&quote, 1))) {
                return makeString(readQuoted(quote));
            }
        }
        const std::size_t end = std::min(rest_.find_first_not_of(kPlainCharacters), rest_.size());
        if (end == 0) {
            throw Malformed();
        }
        const std::string text(rest_.substr(0, end));
        rest_.remove_prefix(end);
        return makeString(text);
    }

    static ObjectHolder makeString(const std::string& utf8) {
        ObjectHolder string = newString(utf8);
        if (!string) {
            throw Malformed();
        }
        return string;
    }

    std::string readQuoted(char quote) {
        std::string text;
        for (char character = takeCharacter(); character != quote; character = takeCharacter()) {
            if (character == '\\') {
                readEscape(text);
            } else {
                text += character;
            }
        }
        return text;
    }

    void readEscape(std::string& text) {
        constexpr std::string_view kNames = "abfnrtv";
        constexpr std::string_view kCharacters = "\a\b\f\n\r\t\v";
        const char name = takeCharacter();
        const std::size_t known = kNames.find(name);
        if (known != std::string_view::npos) {
            text += kCharacters[known];
        } else if (name == 'U' || name == 'u') {
            appendNumber(takeDigits(4, kHexDigits), 16, text);
        } else if (name >= '0' && name <= '7') {
            rest_ = std::string_view(rest_.data() - 1, rest_.size() + 1);
            appendNumber(takeDigits(3, "01234567"), 8, text);
        } else {
            text += name;
        }
    }

    std::string takeDigits(std::size_t most, std::string_view allowed) {
        const std::size_t count = std::min(rest_.substr(0, most).find_first_not_of(allowed), most);
        const std::string digits(rest_.substr(0, count));
        rest_.remove_prefix(digits.size());
        return digits;
    }

    static void appendNumber(const std::string& digits, int base, std::string& text) {
        if (digits.empty() ||
            !appendCharacter(static_cast<std::uint32_t>(std::stoul(digits, nullptr, base)), text)) {
            throw Malformed();
        }
    }

    std::string_view rest_;
};

template <typename Read>
ObjectHolder ifWellFormed(const Read& read) {
    try {
        return read();
    } catch (const Malformed&) {
        return ObjectHolder();
    }
}

}  // namespace

ObjectHolder readOldStylePropertyList(std::string_view document) {
    return ifWellFormed([document] { return Reader(document).readDocument(); });
}

ObjectHolder readStringsFile(std::string_view document) {
    return ifWellFormed([document] { return Reader(document).readStrings(); });
}

}  // namespace portability
