// GetInfoCommand: a copy of a host's request for an information block.
#pragma once

#include <cstdint>
#include <memory>

namespace dovrel {

class GetInfoCommand {
  public:
    /// The request that the library serves itself: these two bytes, in the processor's byte order.
    static constexpr uint16_t kInterfaceVersionRequest = 352;

    /// Copies `length` bytes of the request. Throws std::bad_alloc.
    GetInfoCommand(const void* request, uint32_t length);

    const uint8_t* bytes() const { return bytes_.get(); }
    uint32_t length() const { return length_; }

    /// Returns whether the request consists of exactly the two bytes of kInterfaceVersionRequest.
    bool asksForInterfaceVersion() const;

    /// Returns the reply to kInterfaceVersionRequest: the interface version of the library, in the
    /// processor's byte order. The block has kInterfaceVersionBlockSize bytes and is allocated with new[].
    /// Throws std::bad_alloc.
    static std::unique_ptr<uint8_t[]> interfaceVersionBlock();
    static constexpr uint32_t kInterfaceVersionBlockSize = 4;

  private:
    std::unique_ptr<uint8_t[]> bytes_;
    uint32_t length_;
};

}  // namespace dovrel
