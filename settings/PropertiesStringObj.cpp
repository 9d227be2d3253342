#include "settings/PropertiesStringObj.h"

#include "settings/LineGrammar.h"

namespace dovrel {

std::string_view PropertiesStringObj::takeLine() {
    const size_t begin = position_;
    const size_t end = endOfLine(begin);
    position_ = end < text_.size() ? end + 1 : end;
    return trimmed(text_.substr(begin, end - begin));
}

std::string_view PropertiesStringObj::takeLinesUpToKeyLine() {
    const size_t begin = position_;
    while (!atEnd()) {
        const size_t lineBegin = position_;
        const std::string_view line = takeLine();
        if (startsAsKeyLine(line)) {
            position_ = lineBegin;
            break;
        }
    }
    return text_.substr(begin, position_ - begin);
}

size_t PropertiesStringObj::endOfLine(size_t from) const {
    const size_t end = text_.find(kLineFeed, from);
    return end == std::string_view::npos ? text_.size() : end;
}

}  // namespace dovrel
