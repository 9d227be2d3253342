// The call as a structured block, with the library's encoder and reader.
#pragma once

#include "CallMethod.h"
#include "serialization/CPPExpandingByteArray.h"
#include "serialization/StructuredBlockEncoder.h"
#include "serialization/StructuredByteArrayReader.h"

namespace dovrel::benchmarks {

struct StructuredCodec {
    using Bytes = CPPExpandingByteArray;

    static void build(const CallMethodFields& fields, Bytes& bytes) {
        encodeStructuredBlock(
            bytes, 9, StructuredPart::ofNumber(0, fields.transferKind),
            StructuredPart::ofNumber(1, fields.messageKind), StructuredPart::ofNumber(3, fields.command),
            StructuredPart::ofNumber(103, fields.session),
            StructuredPart::ofBytes(105, fields.object, sizeof fields.object),
            StructuredPart::ofBytes(107, fields.name, fields.nameSize),
            StructuredPart::ofBytes(110, fields.payload.data(), static_cast<uint32_t>(fields.payload.size())),
            StructuredPart::ofBytes(104, nullptr, 0));
    }

    static bool read(const Bytes& bytes, CallMethodFields& fields) {
        StructuredByteArrayReader reader;
        reader.initialize(&bytes);
        fields.transferKind = reader.viewNumber(0);
        fields.messageKind = reader.viewNumber(1);
        fields.command = reader.viewNumber(3);
        fields.session = reader.viewNumber(103);
        uint32_t objectSize = sizeof fields.object;
        uint32_t payloadSize = static_cast<uint32_t>(fields.payload.size());
        fields.nameSize = sizeof fields.name;
        fields.executerSize = reader.viewPart(104).length;
        return copy(reader, 105, fields.object, objectSize) &&
               copy(reader, 107, fields.name, fields.nameSize) &&
               copy(reader, 110, fields.payload.data(), payloadSize);
    }

  private:
    // `length`: in: the size of `data`; out: the number of bytes copied.
    static bool copy(const StructuredByteArrayReader& reader, uint32_t tag, uint8_t* data, uint32_t& length) {
        const ByteView part = reader.viewPart(tag);
        if (part.length > length) return false;
        length = part.length;
        if (length != 0) std::memcpy(data, part.data, length);
        return true;
    }
};

}  // namespace dovrel::benchmarks
