#include "settings/EntryReader.h"

#include "settings/LineGrammar.h"

namespace dovrel {

EntryReader::Step EntryReader::next() {
    while (!cursor_.atEnd()) {
        const std::string_view line = cursor_.takeLine();
        if (isKeyLine(line)) {
            key_ = keyOfKeyLine(line);
            keyWaits_ = true;
            return Step::kKey;
        }
        if (keyWaits_ && isValueLine(line)) {
            keyWaits_ = false;
            takeValue(line);
            return Step::kValue;
        }
    }
    return Step::kEnd;
}

bool EntryReader::isKeyLine(std::string_view line) const {
    if (rule_ == KeyLineRule::kOneSlash) return startsAsKeyLine(line);
    return line.substr(0, kKeyLineMark.size()) == kKeyLineMark;
}

void EntryReader::takeValue(std::string_view line) {
    type_ = typeOfValueLine(line);
    value_ = valueOfValueLine(line);
    if (type_ != PropertyType::kBinary) return;

    // The first line of the digits and the lines behind it are one piece of the text; the line feeds and
    // blanks in between are skipped with everything else that is no digit.
    const std::string_view rest = cursor_.takeLinesUpToKeyLine();
    const size_t length = static_cast<size_t>(rest.data() + rest.size() - value_.data());
    value_ = std::string_view(value_.data(), length);
}

}  // namespace dovrel
