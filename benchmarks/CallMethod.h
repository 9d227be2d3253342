// The record with which the codecs are compared: the request of a method call with all its fields.
//
// Every codec encodes a CallMethodFields and decodes the bytes into another one, whose payload
// already has the right size. So all codecs have the same input and the same output: copies of every
// field in the caller's memory.
#pragma once

#include <cstdint>
#include <cstring>
#include <vector>

namespace dovrel::benchmarks {

struct CallMethodFields {
    static constexpr uint32_t kIdentifierSize = 16;
    static constexpr uint32_t kLongestName = 64;

    uint32_t transferKind = 0;
    uint32_t messageKind = 0;
    uint32_t command = 0;
    uint32_t session = 0;
    uint8_t object[kIdentifierSize] = {};
    uint8_t name[kLongestName] = {};  // NUL-terminated
    uint32_t nameSize = 0;            // including the NUL
    std::vector<uint8_t> payload;
    uint32_t executerSize = 0;  // 0: no executer
};

inline CallMethodFields sampleCall(uint32_t payloadSize) {
    CallMethodFields fields;
    fields.transferKind = 1;
    fields.messageKind = 10;
    fields.command = 14;
    fields.session = 77;
    std::memcpy(fields.object, "0123456789abcdef", sizeof fields.object);
    fields.nameSize = sizeof "computeDigest";
    std::memcpy(fields.name, "computeDigest", fields.nameSize);
    fields.payload.resize(payloadSize);
    for (uint32_t i = 0; i < payloadSize; ++i)
        fields.payload[i] = static_cast<uint8_t>(i * 7);
    return fields;
}

inline bool sameFields(const CallMethodFields& a, const CallMethodFields& b) {
    return a.transferKind == b.transferKind && a.messageKind == b.messageKind && a.command == b.command &&
           a.session == b.session && std::memcmp(a.object, b.object, sizeof a.object) == 0 &&
           a.nameSize == b.nameSize && std::memcmp(a.name, b.name, a.nameSize) == 0 &&
           a.payload == b.payload && a.executerSize == b.executerSize;
}

}  // namespace dovrel::benchmarks
