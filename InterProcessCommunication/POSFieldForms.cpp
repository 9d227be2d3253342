#include "InterProcessCommunication/POSFieldForms.h"

#include <cstring>
#include <memory>

#include "client/exceptions/CPPException.h"
#include "serialization/StructuredDataFormat.h"
#include "settings/MultiLanguageSupport.h"
#include "settings/TextKeys.h"

namespace dovrel {

namespace {

constexpr uint32_t kMessageFlagsSize = 4;

}  // namespace

StructuredPart makeNameField(uint32_t id, const char* name) {
    return StructuredPart::ofBytes(id, name, structuredData::toPartLength(uint64_t{std::strlen(name)} + 1));
}

StructuredPart makeIdentifierField(uint32_t id, const CPPByteArray& identifier) {
    requireIdentifierSize(identifier);
    return StructuredPart::ofArray(id, identifier);
}

void requireIdentifierSize(const CPPByteArray& identifier) {
    if (identifier.getSize() != kPOSIdentifierSize)
        throw new CPPException(MultiLanguageSupport::getText(kDllWrongIdentifierSize).c_str());
}

void readIdentifier(POSTransferObj& object, uint32_t id, CPPByteArray& identifier) {
    const std::unique_ptr<CPPByteArray> received = object.readByteArray(id);
    requireIdentifierSize(*received);
    identifier.setOrThrow(received->data(), received->getSize());
}

POSServerMessage readServerMessage(POSTransferObj& object, uint32_t id) {
    const ByteBlock field = object.readBlock(id);
    POSServerMessage message;
    if (field.length < kMessageFlagsSize) return message;
    message.flags = object.readUInt32(id);
    message.text.assign(field.data.get() + kMessageFlagsSize, field.data.get() + field.length);
    return message;
}

}  // namespace dovrel
