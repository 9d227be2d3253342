#include "settings/ReplaceAll.h"

namespace dovrel {

std::string replaceAll(std::string_view text, std::string_view from, std::string_view to) {
    std::string result;
    result.reserve(text.size());
    size_t begin = 0;
    for (size_t at = text.find(from); at != std::string_view::npos; at = text.find(from, begin)) {
        result.append(text.substr(begin, at - begin)).append(to);
        begin = at + from.size();
    }
    return result.append(text.substr(begin));
}

}  // namespace dovrel
