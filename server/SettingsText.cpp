#include "server/SettingsText.h"

#include <algorithm>
#include <limits>
#include <map>
#include <utility>

#include "server/DescribedClass.h"
#include "server/SettingValue.h"
#include "settings/ConfigFileSystem.h"

namespace merrowd {

using dovrel::ConfigFileSystem;
using dovrel::EntryReader;
using dovrel::Properties;
using dovrel::PropertyType;

namespace {

// Throws UnfitValue if the value does not fit the type.
void requireValueOfType(PropertyType type, std::string_view value) {
    using Limits = std::numeric_limits<int32_t>;
    switch (type) {
        case PropertyType::kInteger:
            wholeNumber(std::string(dovrel::trimmed(value)), Limits::min(), Limits::max());
            return;
        case PropertyType::kBinary:
            if (!dovrel::isHexText(value)) throw UnfitValue{"pairs of hexadecimal digits"};
            return;
        case PropertyType::kUnknown:
            throw UnfitValue{"one of the type words INT, STR and BAR in front of it"};
        case PropertyType::kString:
            return;
    }
}

// Examiner: checks each step of the reader and adds problems.
class Examiner {
  public:
    Examiner(std::string_view text, std::vector<std::string>& problems)
        : lastPlace_(text.data()), problems_(problems) {}

    /// Returns whether the value is entered into the section.
    bool accepts(EntryReader::Step step, const EntryReader& reader) {
        if (step == EntryReader::Step::kOther) {
            if (!reader.line().empty() && reader.line() != "\r") addOther(reader.line());
            return false;
        }
        reportOthers();
        if (step == EntryReader::Step::kValue) return acceptsValue(reader);
        reportWaitingKey();
        if (step == EntryReader::Step::kKey) {
            if (reader.key() == DescribedClass::kSectionKey) startSection();
            waitingKey_ = reader.key();
            lineOfKey_ = findLineNumber(reader.line());
            keyWaits_ = true;
        }
        return false;
    }

    /// Returns the lines of the keys of each section. Call it at the end.
    std::vector<std::map<std::string, size_t>> takeLines() {
        startSection();
        return std::move(linesOfSections_);
    }

  private:
    bool acceptsValue(const EntryReader& reader) {
        keyWaits_ = false;
        const size_t line = findLineNumber(reader.line());
        try {
            requireValueOfType(reader.type(), reader.value());
        } catch (const UnfitValue& unfit) {
            report(line, describeProblem(std::string(reader.key()), std::string(reader.value()), unfit));
            return false;
        }
        if (lines_.emplace(reader.key(), lineOfKey_).second) return true;
        report(line, inQuotes(reader.key()) + " has a value already");
        return false;
    }

    // As ConfigFileSystem::readSections does, sections without entries are omitted.
    void startSection() {
        if (!lines_.empty()) linesOfSections_.push_back(std::move(lines_));
        lines_.clear();
    }

    void addOther(std::string_view line) {
        lastOther_ = findLineNumber(line);
        if (firstOther_ != 0) return;
        firstOther_ = lastOther_;
        textOfFirstOther_ = line;
    }

    // Consecutive lines are one problem, so that a file in another format does not fill the log.
    void reportOthers() {
        if (firstOther_ == 0) return;
        const std::string text = inQuotes(textOfFirstOther_);
        if (firstOther_ == lastOther_) {
            report(firstOther_, text + " is not part of an entry");
        } else {
            problems_.push_back("lines " + std::to_string(firstOther_) + " to " + std::to_string(lastOther_) +
                                ": " + text + " and what follows is not part of an entry");
        }
        firstOther_ = 0;
    }

    void reportWaitingKey() {
        if (keyWaits_) report(lineOfKey_, inQuotes(waitingKey_) + " has no value");
        keyWaits_ = false;
    }

    void report(size_t line, const std::string& problem) {
        problems_.push_back("line " + std::to_string(line) + ": " + problem);
    }

    // Returns the number of a line, counted from 1. Must be called for lines in their order.
    size_t findLineNumber(std::string_view line) {
        lastNumber_ += static_cast<size_t>(std::count(lastPlace_, line.data(), dovrel::kLineFeed));
        lastPlace_ = line.data();
        return lastNumber_;
    }

    const char* lastPlace_;
    size_t lastNumber_ = 1;
    std::vector<std::string>& problems_;

    bool keyWaits_ = false;
    std::string_view waitingKey_;
    size_t lineOfKey_ = 0;
    std::map<std::string, size_t> lines_;  // of the keys that have a value in this section
    std::vector<std::map<std::string, size_t>> linesOfSections_;

    size_t firstOther_ = 0;  // 0 if there is none
    size_t lastOther_ = 0;
    std::string_view textOfFirstOther_;
};

}  // namespace

std::string SettingsSection::place(const std::string& key) const {
    const auto found = lines.find(key);
    return found != lines.end() ? "line " + std::to_string(found->second) + ": " : "";
}

std::vector<SettingsSection> readSettingsText(std::string_view text, std::vector<std::string>& problems) {
    Examiner examiner(text, problems);
    std::vector<Properties> entries = ConfigFileSystem::readSections(
        text, DescribedClass::kSectionKey, [&examiner](EntryReader::Step step, const EntryReader& reader) {
            return examiner.accepts(step, reader);
        });
    std::vector<std::map<std::string, size_t>> lines = examiner.takeLines();
    std::vector<SettingsSection> sections;
    for (size_t i = 0; i < entries.size(); ++i)
        sections.push_back({std::move(entries[i]), std::move(lines[i])});
    return sections;
}

}  // namespace merrowd
