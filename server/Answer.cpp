#include "server/Answer.h"

namespace merrowd {

CPPByteArray bytesOf(const std::string& text) {
    CPPByteArray bytes;
    bytes.set(text.data(), static_cast<uint32_t>(text.size()));
    return bytes;
}

CPPByteArray bytesOfNumber(uint32_t number) {
    CPPByteArray bytes;
    bytes.setFilled(sizeof number, 0);
    for (uint32_t i = 0; i < sizeof number; ++i)
        bytes.setByte(i, static_cast<uint8_t>(number >> (8 * i)));
    return bytes;
}

uint32_t numberOf(const CPPByteArray& argument) {
    if (argument.getSize() != sizeof(uint32_t)) {
        throw Refusal{refusalCode::kPOSParameterFormat,
                      "the argument has " + std::to_string(argument.getSize()) + " bytes, not 4"};
    }
    uint32_t number = 0;
    for (uint32_t i = 0; i < sizeof number; ++i)
        number |= uint32_t{argument.getByte(i)} << (8 * i);
    return number;
}

void requireNoArgument(const CPPByteArray& argument) {
    if (argument.getSize() == 0) return;
    throw Refusal{refusalCode::kPOSParameterFormat, "the method takes no argument"};
}

}  // namespace merrowd
