#include "tools/properties/EntryList.h"

#include <algorithm>
#include <set>

#include "platform/trace/TraceText.h"
#include "settings/PropertiesStringObj.h"
#include "tools/properties/StoredEntry.h"

namespace dovrel::tools {

namespace {

constexpr size_t kLongestQuote = 40;
constexpr std::string_view kVersionKey = "version";

std::string quoted(std::string_view text) {
    const bool isLong = text.size() > kLongestQuote;
    return '"' + traceOneLineText(std::string(text.substr(0, kLongestQuote))) + (isLong ? "...\"" : "\"");
}

bool isInteger(std::string_view text) {
    text = trimmed(text);
    // Readers accept a "+".
    const bool hasPlus = text.substr(0, 1) == "+";
    if (hasPlus) text.remove_prefix(1);
    const bool hasTwoSigns = hasPlus && text.substr(0, 1) == "-";
    return !hasTwoSigns && findInteger(text).has_value();
}

// Collects the entries and problems while a reader goes through the text.
class Lister {
  public:
    Lister(std::string_view text, std::string_view sectionKey, bool allowsComments)
        : text_(text), sectionKey_(sectionKey), allowsComments_(allowsComments), counted_(text.data()) {}

    EntryList list() {
        using Step = EntryReader::Step;
        PropertiesStringObj cursor(text_);
        EntryReader reader(cursor, sectionKey_.empty() ? KeyLineRule::kOneSlash : KeyLineRule::kTwoSlashes);
        for (size_t begin = 0;; begin = cursor.position()) {
            const Step step = reader.next();
            if (step == Step::kEnd) break;
            lineNumber_ += static_cast<size_t>(std::count(counted_, text_.data() + begin, kLineFeed));
            counted_ = text_.data() + begin;
            checkLine(reader.line());
            if (step == Step::kKey) takeKey(reader, begin, cursor.position());
            if (step == Step::kValue) takeValue(reader, begin, cursor.position());
            if (step == Step::kOther) takeOther(reader.line());
        }
        reportWaitingKey();
        return std::move(list_);
    }

  private:
    void report(size_t line, const std::string& text) { list_.problems.push_back({line, text}); }

    void checkLine(std::string_view line) {
        if (line.find('\0') != std::string_view::npos)
            report(lineNumber_, "the line contains a NUL byte; readers of the file stop there");
        if (!line.empty() && line.back() == '\r')
            report(lineNumber_, "the line ends with a carriage return, which readers keep");
    }

    void takeKey(const EntryReader& reader, size_t begin, size_t end) {
        reportWaitingKey();
        entry_ = TextEntry();
        entry_.key = reader.key();
        entry_.keyLine = lineNumber_;
        entry_.keyBegin = begin;
        entry_.keyEnd = end;
        keyWaits_ = true;
        if (!sectionKey_.empty() && entry_.key == sectionKey_) beginSection(begin);
        entry_.section = list_.sectionBegins.size() - 1;
        if (reader.line().substr(0, kKeyLineMark.size()) != kKeyLineMark)
            report(lineNumber_, quoted(reader.line()) + " is read as a key, but does not begin with \"//\"");
    }

    void beginSection(size_t begin) {
        list_.sectionBegins.push_back(begin);
        keys_.clear();
    }

    void takeValue(const EntryReader& reader, size_t begin, size_t end) {
        keyWaits_ = false;
        entry_.type = reader.type();
        entry_.value = reader.value();
        entry_.valueLine = lineNumber_;
        entry_.valueBegin = begin;
        entry_.valueEnd = end;
        checkValue();
        const bool isVersion = !sectionKey_.empty() && list_.entries.empty() && entry_.key == kVersionKey &&
                               entry_.keyBegin == 0;
        if (entry_.type != PropertyType::kUnknown) entry_.isRepeated = !keys_.insert(entry_.key).second;
        if (entry_.isRepeated)
            report(entry_.keyLine, quoted(entry_.key) + " occurs twice; readers use the first entry");
        if (!isVersion) list_.entries.push_back(entry_);
        if (isVersion) keys_.clear();
    }

    void checkValue() {
        const std::string start = "the value of " + quoted(entry_.key) + " ";
        switch (entry_.type) {
            case PropertyType::kInteger:
                if (!isInteger(entry_.value))
                    report(lineNumber_, start + "is not a 32-bit number: " + quoted(entry_.value));
                return;
            case PropertyType::kBinary:
                if (!isHexText(entry_.value))
                    report(lineNumber_,
                           start + "is not pairs of hexadecimal digits: " + quoted(entry_.value));
                return;
            case PropertyType::kUnknown:
                report(lineNumber_, start + "does not begin with INT:, STR: or BAR:; readers drop it");
                return;
            case PropertyType::kString:
                return;
        }
    }

    void takeOther(std::string_view line) {
        const bool isBlank = line.empty() || line == "\r";
        if (!isBlank && !allowsComments_) report(lineNumber_, quoted(line) + " is not part of an entry");
    }

    void reportWaitingKey() {
        if (!keyWaits_) return;
        report(entry_.keyLine, quoted(entry_.key) + " has no value");
        keyWaits_ = false;
    }

    std::string_view text_;
    std::string_view sectionKey_;
    bool allowsComments_;
    EntryList list_;
    const char* counted_;    // the lines before this place are counted
    size_t lineNumber_ = 1;  // of the line that was read last
    bool keyWaits_ = false;
    TextEntry entry_;  // the last key, with its value when it has one
    std::set<std::string_view> keys_;
};

}  // namespace

EntryList listEntries(std::string_view text, std::string_view sectionKey, bool allowsComments) {
    EntryList list = Lister(text, sectionKey, allowsComments).list();
    std::stable_sort(list.problems.begin(), list.problems.end(),
                     [](const LineProblem& a, const LineProblem& b) { return a.line < b.line; });
    return list;
}

}  // namespace dovrel::tools
