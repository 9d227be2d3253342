#include "macho/format/UnwindFrames.h"

namespace dovrel::macho {

namespace {

constexpr uint8_t kVersion = 1;
constexpr uint8_t kAbsoluteAddress = 0;
constexpr uint8_t kMinusEight = 0x78;  // as a signed LEB number
constexpr uint8_t kReturnAddressRegister = 16;
constexpr size_t kAlignment = 8;

}  // namespace

void UnwindFrames::end(size_t begin) {
    bytes_.alignTo(kAlignment);
    bytes_.set(begin, static_cast<uint32_t>(bytes_.size() - begin - sizeof(uint32_t)));
}

size_t UnwindFrames::commonFor(uint64_t personality) {
    const auto known = commons_.find(personality);
    if (known != commons_.end()) return known->second;
    const size_t begin = bytes_.size();
    bytes_.put<uint32_t>(0);  // the size, known at the end
    bytes_.put<uint32_t>(0);  // 0 marks a common information entry
    bytes_.put<uint8_t>(kVersion);
    bytes_.putText(personality != 0 ? "zPLR" : "zR");
    bytes_.putUnsignedLeb(1);  // code offsets are in bytes
    bytes_.put<uint8_t>(kMinusEight);
    bytes_.put<uint8_t>(kReturnAddressRegister);
    if (personality != 0) {
        bytes_.putUnsignedLeb(sizeof personality + 3);
        bytes_.put<uint8_t>(kAbsoluteAddress);
        bytes_.put(personality);
        bytes_.put<uint8_t>(kAbsoluteAddress);  // format of the handlers' address
    } else {
        bytes_.putUnsignedLeb(1);
    }
    bytes_.put<uint8_t>(kAbsoluteAddress);  // format of the functions' addresses
    end(begin);
    commons_.emplace(personality, begin);
    return begin;
}

void UnwindFrames::add(const UnwindFunction& function) {
    const size_t common = commonFor(function.personality);
    const size_t begin = bytes_.size();
    positions_.push_back(begin);
    bytes_.put<uint32_t>(0);  // the size, known at the end
    bytes_.put(static_cast<uint32_t>(begin + sizeof(uint32_t) - common));
    bytes_.put(function.begin);
    bytes_.put(function.size);
    if (function.personality != 0) {
        bytes_.putUnsignedLeb(sizeof function.handlers);
        bytes_.put(function.handlers);
    } else {
        bytes_.putUnsignedLeb(0);
    }
    bytes_.append(function.instructions.data(), function.instructions.size());
    end(begin);
}

std::vector<uint8_t> UnwindFrames::take() {
    bytes_.put<uint32_t>(0);
    return bytes_.take();
}

}  // namespace dovrel::macho
