// The call in the same wire format, with code for exactly this record. The size is computed first,
// one block is allocated, each field has a fixed place, and reading checks each length. Parts in
// another order are rejected.
#pragma once

#include <cstdlib>
#include <memory>

#include "CallMethod.h"

namespace dovrel::benchmarks {

struct HandWrittenCodec {
    struct Bytes {
        struct Free {
            void operator()(uint8_t* block) const { std::free(block); }
        };
        std::unique_ptr<uint8_t, Free> block;
        uint32_t size = 0;
    };

    static void build(const CallMethodFields& fields, Bytes& bytes) {
        const auto payloadSize = static_cast<uint32_t>(fields.payload.size());
        bytes.size = 10 + 8 * 8 + 4 * 4 + CallMethodFields::kIdentifierSize + fields.nameSize + payloadSize;
        bytes.block.reset(static_cast<uint8_t*>(std::malloc(bytes.size)));
        uint8_t* at = bytes.block.get();
        std::memcpy(at, "AsAk\0\1\0\0\0\11", 10);
        at += 10;
        at = putNumber(at, 0, fields.transferKind);
        at = putNumber(at, 1, fields.messageKind);
        at = putNumber(at, 3, fields.command);
        at = putNumber(at, 103, fields.session);
        at = putBytes(at, 105, fields.object, CallMethodFields::kIdentifierSize);
        at = putBytes(at, 107, fields.name, fields.nameSize);
        at = putBytes(at, 110, fields.payload.data(), payloadSize);
        putBytes(at, 104, nullptr, 0);
    }

    static bool read(const Bytes& bytes, CallMethodFields& fields) {
        const uint8_t* at = bytes.block.get();
        const uint8_t* const end = at + bytes.size;
        if (bytes.size < 10 || std::memcmp(at, "AsAk\0\1\0\0\0\11", 10) != 0) return false;
        at += 10;
        uint32_t payloadSize = static_cast<uint32_t>(fields.payload.size());
        uint32_t objectSize = CallMethodFields::kIdentifierSize;
        fields.nameSize = CallMethodFields::kLongestName;
        fields.executerSize = 0;
        return takeNumber(at, end, 0, fields.transferKind) && takeNumber(at, end, 1, fields.messageKind) &&
               takeNumber(at, end, 3, fields.command) && takeNumber(at, end, 103, fields.session) &&
               takeBytes(at, end, 105, fields.object, objectSize) &&
               takeBytes(at, end, 107, fields.name, fields.nameSize) &&
               takeBytes(at, end, 110, fields.payload.data(), payloadSize) &&
               takeBytes(at, end, 104, nullptr, fields.executerSize);
    }

  private:
    static void putBigEndian(uint8_t* at, uint32_t value) {
        at[0] = static_cast<uint8_t>(value >> 24);
        at[1] = static_cast<uint8_t>(value >> 16);
        at[2] = static_cast<uint8_t>(value >> 8);
        at[3] = static_cast<uint8_t>(value);
    }

    static uint32_t getBigEndian(const uint8_t* at) {
        return static_cast<uint32_t>(at[0]) << 24 | static_cast<uint32_t>(at[1]) << 16 |
               static_cast<uint32_t>(at[2]) << 8 | static_cast<uint32_t>(at[3]);
    }

    static uint8_t* putNumber(uint8_t* at, uint32_t tag, uint32_t value) {
        const uint8_t bytes[] = {static_cast<uint8_t>(value), static_cast<uint8_t>(value >> 8),
                                 static_cast<uint8_t>(value >> 16), static_cast<uint8_t>(value >> 24)};
        return putBytes(at, tag, bytes, sizeof bytes);
    }

    static uint8_t* putBytes(uint8_t* at, uint32_t tag, const uint8_t* data, uint32_t length) {
        putBigEndian(at, tag);
        putBigEndian(at + 4, length);
        if (length != 0) std::memcpy(at + 8, data, length);
        return at + 8 + length;
    }

    static bool takeNumber(const uint8_t*& at, const uint8_t* end, uint32_t tag, uint32_t& value) {
        uint8_t bytes[4] = {};
        uint32_t length = sizeof bytes;
        if (!takeBytes(at, end, tag, bytes, length)) return false;
        value = static_cast<uint32_t>(bytes[0]) | static_cast<uint32_t>(bytes[1]) << 8 |
                static_cast<uint32_t>(bytes[2]) << 16 | static_cast<uint32_t>(bytes[3]) << 24;
        return true;
    }

    // `length`: in: the size of `data`; out: the number of bytes read.
    static bool takeBytes(const uint8_t*& at, const uint8_t* end, uint32_t tag, uint8_t* data,
                          uint32_t& length) {
        if (end - at < 8 || getBigEndian(at) != tag) return false;
        const uint32_t present = getBigEndian(at + 4);
        if (present > length || present > end - (at + 8)) return false;
        if (present != 0) std::memcpy(data, at + 8, present);
        length = present;
        at += 8 + present;
        return true;
    }
};

}  // namespace dovrel::benchmarks
