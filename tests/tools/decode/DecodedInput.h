// Decodes bytes of hexadecimal digits for tests, and keeps them as long as the result.
#pragma once

#include <string>
#include <string_view>

#include "tests/support/library/Bytes.h"
#include "tools/decode/DecodedOutput.h"
#include "tools/decode/Decoder.h"

namespace dovrel::tools {

class DecodedInput {
  public:
    explicit DecodedInput(std::string_view digits, std::optional<InputKind> kind = std::nullopt,
                          uint32_t mostBytes = 64)
        : bytes_(test::arrayFromHex(digits)),
          decoded_(decode({bytes_.data(), bytes_.getSize()}, kind, mostBytes)) {}

    const Decoded& decoded() const { return decoded_; }
    std::string text() const { return toOutputText(decoded_); }

    // Returns the lines with findings.
    std::string findings() const {
        Decoded onlyFindings = decoded_;
        onlyFindings.items.clear();
        const std::string lines = toOutputText(onlyFindings);
        return lines.substr(lines.find('\n') + 1);
    }

  private:
    CPPByteArray bytes_;
    Decoded decoded_;
};

// The header of a transfer object and its first field.
constexpr char kObjectStart[] = "41 73 41 6B 00 01 00 00 00 09  00 00 00 00 00 00 00 04 01 00 00 00 ";

}  // namespace dovrel::tools
