#include "tests/support/Encodings.h"

#include <iconv.h>

#include <vector>

namespace dovrel::test {

std::optional<std::string> toUTF8(std::string text, const char* encoding) {
    const iconv_t converter = iconv_open("UTF-8", encoding);
    std::vector<char> converted(4 * text.size() + 1);
    char* from = text.data();
    char* to = converted.data();
    size_t fromLeft = text.size();
    size_t toLeft = converted.size();
    const bool isValid = iconv(converter, &from, &fromLeft, &to, &toLeft) != static_cast<size_t>(-1);
    iconv_close(converter);
    if (!isValid) return std::nullopt;
    return std::string(converted.data(), to);
}

}  // namespace dovrel::test
