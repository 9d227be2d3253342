#include "settings/EntryReader.h"

namespace dovrel {

EntryReader::Step EntryReader::next() {
    if (cursor_.atEnd()) return Step::kEnd;
    line_ = cursor_.takeLine();
    if (isKeyLine(line_)) {
        key_ = keyFromLine(line_);
        keyWaits_ = true;
        return Step::kKey;
    }
    if (!keyWaits_) return Step::kOther;
    const std::optional<ValueLine> found = parseValueLine(line_);
    if (!found) return Step::kOther;
    keyWaits_ = false;
    takeValue(*found);
    return Step::kValue;
}

bool EntryReader::isKeyLine(std::string_view line) const {
    if (rule_ == KeyLineRule::kOneSlash) return startsAsKeyLine(line);
    return line.substr(0, kKeyLineMark.size()) == kKeyLineMark;
}

void EntryReader::takeValue(const ValueLine& line) {
    type_ = line.type;
    value_ = line.value;
    if (type_ != PropertyType::kBinary) return;

    // The first line of digits and the lines after it are contiguous in the text, so they become one view.
    // Decoding skips the line feeds and blanks between them, as all characters that are not digits.
    const std::string_view rest = cursor_.takeLinesUpToKeyLine();
    const size_t length = static_cast<size_t>(rest.data() + rest.size() - value_.data());
    value_ = std::string_view(value_.data(), length);
}

}  // namespace dovrel
