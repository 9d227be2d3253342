// The call as a FlatBuffers table, written and read as the FlatBuffers compiler's code would do it:
// fields in a table, bytes in vectors, and verification before reading. A reused builder keeps its
// memory from call to call.
#pragma once

#include <flatbuffers/flatbuffers.h>

#include "CallMethod.h"

namespace dovrel::benchmarks {

struct FlatBuffersCodec {
    using Bytes = flatbuffers::FlatBufferBuilder;

    static void build(const CallMethodFields& fields, Bytes& builder) {
        builder.Clear();
        const auto executer = builder.CreateVector(static_cast<const uint8_t*>(nullptr), 0);
        const auto payload = builder.CreateVector(fields.payload.data(), fields.payload.size());
        const auto name = builder.CreateVector(fields.name, fields.nameSize);
        const auto object = builder.CreateVector(fields.object, sizeof fields.object);
        const flatbuffers::uoffset_t start = builder.StartTable();
        builder.AddOffset(field(7), executer);
        builder.AddOffset(field(6), payload);
        builder.AddOffset(field(5), name);
        builder.AddOffset(field(4), object);
        builder.AddElement<uint32_t>(field(3), fields.session, 0);
        builder.AddElement<uint32_t>(field(2), fields.command, 0);
        builder.AddElement<uint32_t>(field(1), fields.messageKind, 0);
        builder.AddElement<uint32_t>(field(0), fields.transferKind, 0);
        builder.Finish(flatbuffers::Offset<Call>(builder.EndTable(start)));
    }

    static bool read(const Bytes& builder, CallMethodFields& fields) {
        flatbuffers::Verifier verifier(builder.GetBufferPointer(), builder.GetSize());
        if (!verifier.VerifyBuffer<Call>(nullptr)) return false;
        const Call& call = *flatbuffers::GetRoot<Call>(builder.GetBufferPointer());
        fields.transferKind = call.GetField<uint32_t>(field(0), 0);
        fields.messageKind = call.GetField<uint32_t>(field(1), 0);
        fields.command = call.GetField<uint32_t>(field(2), 0);
        fields.session = call.GetField<uint32_t>(field(3), 0);
        uint32_t objectSize = sizeof fields.object;
        uint32_t payloadSize = static_cast<uint32_t>(fields.payload.size());
        fields.nameSize = sizeof fields.name;
        fields.executerSize = 0;
        return copy(call, 4, fields.object, objectSize) && copy(call, 5, fields.name, fields.nameSize) &&
               copy(call, 6, fields.payload.data(), payloadSize) &&
               copy(call, 7, nullptr, fields.executerSize);
    }

  private:
    static constexpr flatbuffers::voffset_t field(int index) {
        return static_cast<flatbuffers::voffset_t>(4 + 2 * index);
    }

    struct Call : flatbuffers::Table {
        bool Verify(flatbuffers::Verifier& verifier) const {
            bool valid = VerifyTableStart(verifier);
            for (int i = 0; i < 4; ++i)
                valid = valid && VerifyField<uint32_t>(verifier, field(i), alignof(uint32_t));
            for (int i = 4; i < 8; ++i) {
                valid = valid && VerifyOffset(verifier, field(i)) && verifier.VerifyVector(bytes(i));
            }
            return valid && verifier.EndTable();
        }
        const flatbuffers::Vector<uint8_t>* bytes(int index) const {
            return GetPointer<const flatbuffers::Vector<uint8_t>*>(field(index));
        }
    };

    // `length`: in: the size of `data`; out: the number of bytes copied.
    static bool copy(const Call& call, int index, uint8_t* data, uint32_t& length) {
        const flatbuffers::Vector<uint8_t>* const bytes = call.bytes(index);
        if (bytes == nullptr || bytes->size() > length) return false;
        length = bytes->size();
        if (data != nullptr) std::memcpy(data, bytes->data(), length);
        return true;
    }
};

}  // namespace dovrel::benchmarks
