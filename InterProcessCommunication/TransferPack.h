// TransferPack: a binary record with a fixed layout, little-endian, whose fields a diagnostic dump prints.
// Requests are never sent in this form.
//
//   offset  width  field                     offset  width  field
//        0      2  Status                       112     16  reserved
//        2      2  DataSize                     128     16  MediatorObjID
//        4      2  Version                      144     16  MediatorClassID
//        6      2  Mode                         160     16  MediatorValue
//        8      4  TAN                          176     16  Digest A
//       12      2  TPLevel                      192     16  Digest B
//       14      2  AddDataSize                  208     16  Digest C
//       16     16  reserved                     224    128  Token 1: its length, then its bytes
//       32     16  SourceObjID                  352    128  Token 2: the same
//       48     16  SourceClassID                480    128  reserved
//       64     16  reserved                     608    AddDataSize bytes of additional data
//       80     16  DestinationObjID
//       96     16  DestinationClassID
#pragma once

#include <cstdint>
#include <cstdio>

#include "serialization/CPPByteArray.h"

namespace dovrel {

class TransferPack {
  public:
    static constexpr uint32_t kFixedSize = 608;

    /// Copies the record. If the record is shorter than its total size, the missing bytes are 0. Bytes after
    /// the total size are dropped. Throws std::bad_alloc.
    explicit TransferPack(const CPPByteArray& record);

    TransferPack(const TransferPack&) = delete;
    TransferPack& operator=(const TransferPack&) = delete;

    uint16_t getStatus() const { return uint16At(0); }
    uint16_t getDataSize() const { return uint16At(2); }
    uint16_t getVersion() const { return uint16At(4); }
    uint16_t getMode() const { return uint16At(6); }
    uint16_t getTPLevel() const { return uint16At(12); }
    uint16_t getAddDataSize() const { return uint16At(14); }

    /// Returns kFixedSize plus the size of the additional data.
    uint32_t getTotalSize() const { return kFixedSize + getAddDataSize(); }

    /// Returns the additional data and stores their size in bytes in `size`. The bytes belong to the record
    /// and are valid as long as it exists.
    const uint8_t* getAdditionalData(uint16_t& size) const;

    /// Prints the record in readable form. The line of a token begins with the token's length byte and lacks
    /// the token's last byte. Readers of dumps rely on this format.
    void dump(std::FILE* output = stdout) const;

  private:
    void resize(uint32_t size);
    uint16_t uint16At(uint32_t offset) const;
    void dumpBytes(std::FILE* output, const char* label, uint32_t offset, uint32_t length) const;
    void dumpToken(std::FILE* output, const char* label, uint32_t offset) const;

    CPPByteArray record_;
};

}  // namespace dovrel
