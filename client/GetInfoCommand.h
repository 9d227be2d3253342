// GetInfoCommand: a request for an information block.
#pragma once

#include <cstdint>
#include <memory>

namespace dovrel {

class GetInfoCommand {
  public:
    /// The request that the library answers by itself: two bytes in the processor's order.
    static constexpr uint16_t kInterfaceVersionRequest = 352;

    /// Copies the request. std::bad_alloc when it finds no room.
    GetInfoCommand(const void* request, uint32_t length);

    const uint8_t* bytes() const { return bytes_.get(); }
    uint32_t length() const { return length_; }

    /// Whether this is exactly the two bytes of kInterfaceVersionRequest.
    bool asksForInterfaceVersion() const;

    /// The answer to it: the interface version that the library speaks, in the processor's order, in a new
    /// block of kInterfaceVersionBlockSize bytes from array new.
    static std::unique_ptr<uint8_t[]> interfaceVersionBlock();
    static constexpr uint32_t kInterfaceVersionBlockSize = 4;

  private:
    std::unique_ptr<uint8_t[]> bytes_;
    uint32_t length_;
};

}  // namespace dovrel
