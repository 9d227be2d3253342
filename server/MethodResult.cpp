#include "server/MethodResult.h"

#include "serialization/ByteOrder.h"

namespace merrowd {

CPPByteArray toBytes(const std::string& text) {
    CPPByteArray bytes;
    bytes.set(text.data(), static_cast<uint32_t>(text.size()));
    return bytes;
}

CPPByteArray numberToBytes(uint32_t number) {
    std::array<uint8_t, sizeof number> stored{};
    dovrel::storeLittleEndian32(stored.data(), number);
    CPPByteArray bytes;
    bytes.set(stored.data(), stored.size());
    return bytes;
}

uint32_t parseNumber(const CPPByteArray& argument) {
    if (argument.getSize() != sizeof(uint32_t)) {
        throw Refusal{refusalCode::kPOSParameterFormat,
                      "the argument has " + std::to_string(argument.getSize()) + " bytes, not 4"};
    }
    return dovrel::loadLittleEndian32(argument.data());
}

void requireNoArgument(const CPPByteArray& argument) {
    if (argument.getSize() == 0) return;
    throw Refusal{refusalCode::kPOSParameterFormat, "the method takes no argument"};
}

}  // namespace merrowd
