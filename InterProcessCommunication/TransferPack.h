// TransferPack: a binary record with a fixed layout, little-endian, whose fields a diagnostic dump prints.
// Requests are never sent in this form.
//
// kTransferPackFields lists the fields of its fixed part. AddDataSize bytes of additional data follow.
#pragma once

#include <array>
#include <cstdint>
#include <cstdio>

#include "serialization/CPPByteArray.h"

namespace dovrel {

enum class TransferPackForm {
    kNumber,   ///< an unsigned number of 2 bytes
    kBytes,    ///< any bytes
    kToken,    ///< the length of the token in 1 byte, then the token; the bytes after it have no meaning
    kReserved  ///< bytes without a meaning
};

/// One field of the fixed part.
struct TransferPackField {
    const char* name;
    uint32_t offset;  ///< in the record
    uint32_t length;  ///< in bytes
    TransferPackForm form;
};

namespace packField {

inline constexpr TransferPackField kStatus{"Status", 0, 2, TransferPackForm::kNumber};
inline constexpr TransferPackField kDataSize{"DataSize", 2, 2, TransferPackForm::kNumber};
inline constexpr TransferPackField kVersion{"Version", 4, 2, TransferPackForm::kNumber};
inline constexpr TransferPackField kMode{"Mode", 6, 2, TransferPackForm::kNumber};
inline constexpr TransferPackField kTAN{"TAN", 8, 4, TransferPackForm::kBytes};
inline constexpr TransferPackField kTPLevel{"TPLevel", 12, 2, TransferPackForm::kNumber};
inline constexpr TransferPackField kAddDataSize{"AddDataSize", 14, 2, TransferPackForm::kNumber};
inline constexpr TransferPackField kReserved16{"reserved", 16, 16, TransferPackForm::kReserved};
inline constexpr TransferPackField kSourceObjID{"SourceObjID", 32, 16, TransferPackForm::kBytes};
inline constexpr TransferPackField kSourceClassID{"SourceClassID", 48, 16, TransferPackForm::kBytes};
inline constexpr TransferPackField kReserved64{"reserved", 64, 16, TransferPackForm::kReserved};
inline constexpr TransferPackField kDestinationObjID{"DestinationObjID", 80, 16, TransferPackForm::kBytes};
inline constexpr TransferPackField kDestinationClassID{"DestinationClassID", 96, 16,
                                                       TransferPackForm::kBytes};
inline constexpr TransferPackField kReserved112{"reserved", 112, 16, TransferPackForm::kReserved};
inline constexpr TransferPackField kMediatorObjID{"MediatorObjID", 128, 16, TransferPackForm::kBytes};
inline constexpr TransferPackField kMediatorClassID{"MediatorClassID", 144, 16, TransferPackForm::kBytes};
inline constexpr TransferPackField kMediatorValue{"MediatorValue", 160, 16, TransferPackForm::kBytes};
inline constexpr TransferPackField kDigestA{"Digest A", 176, 16, TransferPackForm::kBytes};
inline constexpr TransferPackField kDigestB{"Digest B", 192, 16, TransferPackForm::kBytes};
inline constexpr TransferPackField kDigestC{"Digest C", 208, 16, TransferPackForm::kBytes};
inline constexpr TransferPackField kToken1{"Token 1", 224, 128, TransferPackForm::kToken};
inline constexpr TransferPackField kToken2{"Token 2", 352, 128, TransferPackForm::kToken};
inline constexpr TransferPackField kReserved480{"reserved", 480, 128, TransferPackForm::kReserved};

}  // namespace packField

/// All fields of the fixed part, in the order of their offsets and without gaps.
inline constexpr std::array<TransferPackField, 23> kTransferPackFields{packField::kStatus,
                                                                       packField::kDataSize,
                                                                       packField::kVersion,
                                                                       packField::kMode,
                                                                       packField::kTAN,
                                                                       packField::kTPLevel,
                                                                       packField::kAddDataSize,
                                                                       packField::kReserved16,
                                                                       packField::kSourceObjID,
                                                                       packField::kSourceClassID,
                                                                       packField::kReserved64,
                                                                       packField::kDestinationObjID,
                                                                       packField::kDestinationClassID,
                                                                       packField::kReserved112,
                                                                       packField::kMediatorObjID,
                                                                       packField::kMediatorClassID,
                                                                       packField::kMediatorValue,
                                                                       packField::kDigestA,
                                                                       packField::kDigestB,
                                                                       packField::kDigestC,
                                                                       packField::kToken1,
                                                                       packField::kToken2,
                                                                       packField::kReserved480};

class TransferPack {
  public:
    static constexpr uint32_t kFixedSize = 608;

    /// Copies the record. If the record is shorter than its total size, the missing bytes are 0. Bytes after
    /// the total size are dropped. Throws std::bad_alloc.
    explicit TransferPack(const CPPByteArray& record);

    TransferPack(const TransferPack&) = delete;
    TransferPack& operator=(const TransferPack&) = delete;

    uint16_t getStatus() const { return readNumber(packField::kStatus); }
    uint16_t getDataSize() const { return readNumber(packField::kDataSize); }
    uint16_t getVersion() const { return readNumber(packField::kVersion); }
    uint16_t getMode() const { return readNumber(packField::kMode); }
    uint16_t getTPLevel() const { return readNumber(packField::kTPLevel); }
    uint16_t getAddDataSize() const { return readNumber(packField::kAddDataSize); }

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
    uint16_t readNumber(const TransferPackField& field) const;
    void dumpBytes(std::FILE* output, const char* label, uint32_t offset, uint32_t length) const;
    void dumpToken(std::FILE* output, const char* label, const TransferPackField& field) const;

    CPPByteArray record_;
};

}  // namespace dovrel
