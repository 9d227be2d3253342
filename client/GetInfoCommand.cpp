#include "client/GetInfoCommand.h"

#include <cstring>

#include "InterProcessCommunication/POSCommands.h"

namespace dovrel {

GetInfoCommand::GetInfoCommand(const void* request, uint32_t length)
    : bytes_(new uint8_t[length]), length_(length) {
    if (length != 0) std::memcpy(bytes_.get(), request, length);
}

bool GetInfoCommand::asksForInterfaceVersion() const {
    uint16_t word = 0;
    if (length_ != sizeof word) return false;
    std::memcpy(&word, bytes_.get(), sizeof word);
    return word == kInterfaceVersionRequest;
}

ByteBlock GetInfoCommand::makeInterfaceVersionBlock() {
    static_assert(sizeof kPOSInterfaceVersion == 4, "hosts expect a 32-bit version");
    ByteBlock block{std::make_unique<uint8_t[]>(sizeof kPOSInterfaceVersion), sizeof kPOSInterfaceVersion};
    std::memcpy(block.data.get(), &kPOSInterfaceVersion, block.length);
    return block;
}

}  // namespace dovrel
