// GetInfoCommand: a copy of a host's request for an information block.
#pragma once

#include <cstdint>
#include <memory>

#include "serialization/ByteBlock.h"

namespace dovrel {

class GetInfoCommand {
  public:
    /// The request that the library serves itself: these two bytes, in the processor's byte order.
    static constexpr uint16_t kInterfaceVersionRequest = 352;

    /// Copies `length` bytes of the request. Throws std::bad_alloc.
    GetInfoCommand(const void* request, uint32_t length);

    /// Returns the bytes of the request. Valid as long as this object.
    ByteView bytes() const { return {bytes_.get(), length_}; }

    /// Returns whether the request consists of exactly the two bytes of kInterfaceVersionRequest.
    bool asksForInterfaceVersion() const;

    /// Returns the reply to kInterfaceVersionRequest: the interface version of the library, 4 bytes in the
    /// processor's byte order. Throws std::bad_alloc.
    static ByteBlock makeInterfaceVersionBlock();

  private:
    std::unique_ptr<uint8_t[]> bytes_;
    uint32_t length_;
};

}  // namespace dovrel
