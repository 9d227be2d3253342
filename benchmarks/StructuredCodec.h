// The call as a structured block, by the library's writer and reader.
#pragma once

#include "CallMethod.h"
#include "serialization/CPPExpandingByteArray.h"
#include "serialization/StructuredByteArrayReader.h"
#include "serialization/StructuredByteArrayWriter.h"

namespace dovrel::benchmarks {

struct StructuredCodec {
    using Bytes = CPPExpandingByteArray;

    static void build(const CallMethodFields& fields, Bytes& bytes) {
        StructuredByteArrayWriter writer;
        writer.initialize(bytes, 9);
        writer.writeUInt32Part(0, fields.transferKind);
        writer.writeUInt32Part(1, fields.messageKind);
        writer.writeUInt32Part(3, fields.command);
        writer.writeUInt32Part(103, fields.session);
        writer.writeBytesPart(105, fields.object, sizeof fields.object);
        writer.writeBytesPart(107, fields.name, fields.nameSize);
        writer.writeBytesPart(110, fields.payload.data(), static_cast<uint32_t>(fields.payload.size()));
        writer.writeBytesPart(104, nullptr, 0);
    }

    static bool read(const Bytes& bytes, CallMethodFields& fields) {
        StructuredByteArrayReader reader;
        reader.initialize(&bytes);
        fields.transferKind = reader.readUInt32Part(0);
        fields.messageKind = reader.readUInt32Part(1);
        fields.command = reader.readUInt32Part(3);
        fields.session = reader.readUInt32Part(103);
        if (reader.getPartLength(105) != sizeof fields.object) return false;
        reader.readPart(105, fields.object);
        fields.nameSize = reader.getPartLength(107);
        if (fields.nameSize > sizeof fields.name) return false;
        reader.readPart(107, fields.name);
        if (reader.getPartLength(110) > fields.payload.size()) return false;
        reader.readPart(110, fields.payload.data());
        fields.executerSize = reader.getPartLength(104);
        return true;
    }
};

}  // namespace dovrel::benchmarks
