// One request to the server, or one answer from it: a structured block of four numbered header fields and any
// number of payload fields (POSCommands.h lists them).
//
// An object is either written, field by field, and then sent, or it is rebuilt from received bytes and then
// read. The bytes are parsed once, at the first read; until then the object may still be written to.
//
// Failures are thrown as a pointer to a new exception that the catcher owns. Reading throws a
// StructuredReaderNotInitializedException when the bytes are no structured block (none at all, too), and a
// PartNotFoundException when the field is missing. Writing throws a StructuredWriteFailedException when the
// bytes cannot grow. Running out of memory anywhere else is std::bad_alloc.
//
// One thread at a time.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "InterProcessCommunication/POSCommands.h"
#include "serialization/CPPExpandingByteArray.h"
#include "serialization/StructuredByteArrayReader.h"
#include "serialization/StructuredByteArrayWriter.h"

namespace dovrel {

class POSTransferObj {
  public:
    /// Without any field: to be rebuilt from received bytes, or to be written to.
    POSTransferObj();

    /// With the header fields 0, 1 and 3, in this order, and behind them the given ones, each a
    /// StructuredPart with the field's id for its tag. Takes much less time than writing them one by one.
    template <class... Fields>
    POSTransferObj(uint32_t transferKind, uint32_t messageKind, uint32_t command, const Fields&... fields) {
        writer_.initialize(bytes_, formatVersion_,
                           {StructuredPart::ofNumber(headerId0_, transferKind),
                            StructuredPart::ofNumber(headerId1_, messageKind),
                            StructuredPart::ofNumber(headerId3_, command), fields...});
    }

    POSTransferObj(const POSTransferObj&) = delete;
    POSTransferObj& operator=(const POSTransferObj&) = delete;

    // Header fields are written behind what is there; of a field that is written twice, readers see the
    // first.
    void setTransferKind(uint32_t value) { writeUInt32(headerId0_, value); }
    void setMessageKind(uint32_t value) { writeUInt32(headerId1_, value); }
    void setCommand(uint32_t value) { writeUInt32(headerId3_, value); }

    uint32_t getMessageKind() { return readHeaderField(headerId1_); }
    uint32_t getCommand() { return readHeaderField(headerId3_); }

    void writeUInt32(uint32_t id, uint32_t value) { writer_.writeUInt32Part(id, value); }
    /// The pointer may be null when length is 0.
    void writeBytes(uint32_t id, const void* bytes, uint32_t length);
    void writeByteArray(uint32_t id, const CPPByteArray& array) { writer_.writeArrayPart(id, array); }
    /// The characters of the text without a terminating zero.
    void writeString(uint32_t id, const std::string& text) { writer_.writeStringPart(id, text); }

    /// The first four bytes of the field, the least significant first; a shorter field counts as
    /// zero-extended.
    uint32_t readUInt32(uint32_t id);
    /// A new array with all bytes of the field.
    std::unique_ptr<CPPByteArray> readByteArray(uint32_t id);
    /// All bytes of the field, one character per byte.
    std::string readString(uint32_t id);
    /// All bytes of the field in a block from array new, and their number in `length`; null for an empty
    /// field. Leaves `length` alone when it throws.
    std::unique_ptr<uint8_t[]> readBlock(uint32_t id, uint32_t& length);

    bool hasField(uint32_t id);

    /// The wire form: exactly the bytes that travel.
    const CPPByteArray& bytes() const { return bytes_; }
    /// Replaces the content of `array` by the wire form. If it throws, `array` is empty.
    void copyBytesTo(CPPByteArray& array) const;

    /// Makes the object the one that was sent as these bytes. For an object that was not read yet, and not to
    /// be written to any more. If it throws, the object is to be discarded.
    void copyBytesFrom(const CPPByteArray& array) { copyBytesFrom(array.data(), array.getSize()); }
    /// The same from a block of memory; the pointer may be null when length is 0.
    void copyBytesFrom(const void* bytes, uint32_t length);

  private:
    uint32_t readHeaderField(uint32_t id);
    void attachReader();

    const uint32_t formatVersion_ = kTransferObjFormatVersion;
    const uint32_t headerId0_ = posField::kTransferKind;
    const uint32_t headerId1_ = posField::kMessageKind;
    const uint32_t headerId2_ = posField::kReserved;
    const uint32_t headerId3_ = posField::kCommand;
    StructuredByteArrayReader reader_;
    StructuredByteArrayWriter writer_;
    CPPExpandingByteArray bytes_;
    bool readerAttached_ = false;
};

}  // namespace dovrel
