// POSTransferObj: one request to the server or one reply from it. It is a structured block of four numbered
// header fields and any number of further fields (POSCommands.h lists them).
//
// An object is either written, field by field, and then sent, or it is filled with received bytes and then
// read. The bytes are parsed once, at the first read. After that, and after copyBytesFrom, the object must not
// be written to.
//
// Objects of any size are sent and received without needless copies: an object can refer to its fields until
// its bytes are sent (deferFields), it can own received bytes (adoptBytes), and it can give up its bytes for
// the largest field in them (takeBlock).
//
// Failures are thrown as a pointer to a new exception that the catching code owns. Reading throws a
// StructuredReaderNotInitializedException if the bytes are not a structured block (including an empty object),
// and a PartNotFoundException if the field is missing. Writing throws a StructuredWriteFailedException if the
// bytes cannot grow. Any other allocation failure throws std::bad_alloc.
//
// One thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "InterProcessCommunication/POSCommands.h"
#include "serialization/BorrowedByteArray.h"
#include "serialization/ByteBlock.h"
#include "serialization/CPPExpandingByteArray.h"
#include "serialization/StructuredBlockEncoder.h"
#include "serialization/StructuredByteArrayReader.h"
#include "serialization/StructuredByteArrayWriter.h"

namespace dovrel {

class POSTransferObj {
  public:
    /// Creates an object without any field, to be filled by copyBytesFrom or by the writing functions.
    POSTransferObj();

    /// Creates an object with the header fields 0, 1 and 3, in this order, followed by the given fields. Each
    /// of them is a StructuredPart whose tag is the number of the field. This is much faster than writing the
    /// fields one by one.
    template <class... Fields>
    POSTransferObj(uint32_t transferKind, uint32_t messageKind, uint32_t command, const Fields&... fields) {
        encodeStructuredBlock(bytes_, formatVersion_, StructuredPart::ofNumber(headerId0_, transferKind),
                              StructuredPart::ofNumber(headerId1_, messageKind),
                              StructuredPart::ofNumber(headerId3_, command), fields...);
        writer_.continueBlock(bytes_);
    }

    /// Creates an object that was received, without copying its bytes (see adoptBytes).
    explicit POSTransferObj(ByteBlock received);

    POSTransferObj(const POSTransferObj&) = delete;
    POSTransferObj& operator=(const POSTransferObj&) = delete;

    // These functions append a header field. If a field is written twice, readers see the first one.
    void setTransferKind(uint32_t value) { writeUInt32(headerId0_, value); }
    void setMessageKind(uint32_t value) { writeUInt32(headerId1_, value); }
    void setCommand(uint32_t value) { writeUInt32(headerId3_, value); }

    uint32_t getMessageKind() { return readHeaderField(headerId1_); }
    uint32_t getCommand() { return readHeaderField(headerId3_); }

    void writeUInt32(uint32_t id, uint32_t value) { writer().writeUInt32Part(id, value); }
    /// The pointer may be null if `length` is 0.
    void writeBytes(uint32_t id, const void* bytes, uint32_t length);
    void writeByteArray(uint32_t id, const CPPByteArray& array) { writer().writeArrayPart(id, array); }
    /// Does the same, but may use the block of the array for the object's bytes, so that a large array is not
    /// in memory twice. The array is empty or unchanged afterwards.
    void writeByteArray(uint32_t id, CPPByteArray&& array);
    /// Writes the characters of the text without a terminating NUL.
    void writeString(uint32_t id, const std::string& text) { writer().writeStringPart(id, text); }

    /// Returns the first four bytes of the field as a number, least significant byte first. A shorter field
    /// is zero-extended.
    uint32_t readUInt32(uint32_t id);
    /// Returns a new array with all bytes of the field.
    std::unique_ptr<CPPByteArray> readByteArray(uint32_t id);
    /// Returns all bytes of the field, one character per byte.
    std::string readString(uint32_t id);
    /// Returns all bytes of the field in a new block.
    ByteBlock readBlock(uint32_t id);
    /// Does the same, but in the block of an object that owns its received bytes, if most of them belong to
    /// the field. Then no memory is allocated. The object must not be used afterwards.
    ByteBlock takeBlock(uint32_t id);

    bool hasField(uint32_t id);

    /// Returns the wire form: exactly the bytes that are sent. Encodes deferred fields.
    const CPPByteArray& bytes() const;
    /// Returns the wire form in a new block. Does not encode deferred fields in this object, so they exist
    /// only in the block. If it throws, the object is unchanged.
    ByteBlock copyWireForm() const;
    /// Replaces the content of `array` by the wire form. If it throws, `array` is unchanged.
    void copyBytesTo(CPPByteArray& array) const;

    /// Replaces the content by received bytes. Must be called before the first read. If it throws, discard
    /// the object.
    void copyBytesFrom(const CPPByteArray& array) { copyBytesFrom(array.data(), array.getSize()); }
    /// Does the same with a block of memory. The pointer may be null if length is 0.
    void copyBytesFrom(const void* bytes, uint32_t length);
    /// Does the same with a block that the object owns from now on. The object must not be written to, not
    /// even before the first read. An empty block makes an object without bytes.
    void adoptBytes(ByteBlock received);
    void adoptBytes(CPPByteArray&& received);

    /// Returns the wire form and leaves an object without bytes, which must not be used any more.
    CPPByteArray takeBytes();

  protected:
    /// Gives an object without bytes the `count` fields. They are encoded when their bytes are needed, so the
    /// fields and the bytes to which they refer must outlive this object. If the wire form would be too long,
    /// throws and changes nothing.
    void deferFields(const StructuredPart* fields, size_t count);

  private:
    uint32_t readHeaderField(uint32_t id);
    void attachReader();
    void encodeDeferred() const;
    StructuredByteArrayWriter& writer();

    const uint32_t formatVersion_ = kTransferObjFormatVersion;
    const uint32_t headerId0_ = posField::kTransferKind;
    const uint32_t headerId1_ = posField::kMessageKind;
    const uint32_t headerId2_ = posField::kReserved;
    const uint32_t headerId3_ = posField::kCommand;
    StructuredByteArrayReader reader_;
    mutable StructuredByteArrayWriter writer_;
    mutable CPPExpandingByteArray bytes_;
    bool readerAttached_ = false;
    mutable const StructuredPart* deferred_ = nullptr;  // null if bytes_ or received_ is the wire form
    size_t deferredCount_ = 0;
    uint32_t deferredSize_ = 0;  // of the wire form, in bytes
    ByteBlock received_;         // without data if bytes_ is the wire form
    BorrowedByteArray receivedArray_;
};

}  // namespace dovrel
