#include "client/exceptions/OwnedText.h"

#include <cstring>

namespace dovrel {

std::unique_ptr<char[]> copyOfText(const char* text) {
    if (text == nullptr || *text == '\0') return nullptr;
    const size_t bytes = std::strlen(text) + 1;
    std::unique_ptr<char[]> copy(new char[bytes]);
    std::memcpy(copy.get(), text, bytes);
    return copy;
}

}  // namespace dovrel
