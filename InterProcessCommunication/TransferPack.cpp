#include "InterProcessCommunication/TransferPack.h"

#include <algorithm>

#include "serialization/ByteOrder.h"

namespace dovrel {

namespace {

struct DumpedBytes {
    const char* label;
    const TransferPackField& field;
};

constexpr DumpedBytes kDumpedBytes[] = {
    {"TAN:                  ", packField::kTAN},
    {"SourceObjID:          ", packField::kSourceObjID},
    {"SourceClassID:        ", packField::kSourceClassID},
    {"DestinationObjID:     ", packField::kDestinationObjID},
    {"DestinationClassID:   ", packField::kDestinationClassID},
    {"MediatorObjID:       ", packField::kMediatorObjID},
    {"MediatorClassID:     ", packField::kMediatorClassID},
    {"MediatorValue:       ", packField::kMediatorValue},
    {"Digest A:            ", packField::kDigestA},
    {"Digest B:            ", packField::kDigestB},
    {"Digest C:            ", packField::kDigestC},
};

constexpr bool isWithoutGaps() {
    uint32_t offset = 0;
    for (const TransferPackField& field : kTransferPackFields) {
        if (field.offset != offset) return false;
        offset += field.length;
    }
    return offset == TransferPack::kFixedSize;
}
static_assert(isWithoutGaps());

}  // namespace

TransferPack::TransferPack(const CPPByteArray& record) : record_(record) {
    record_.requireSize(record.getSize());
    // The fixed part contains the size of the additional data, so it must be complete before
    // getTotalSize is called.
    if (record_.getSize() < kFixedSize) resize(kFixedSize);
    resize(getTotalSize());
}

void TransferPack::resize(uint32_t size) {
    record_.resize(size, 0);
    record_.requireSize(size);
}

const uint8_t* TransferPack::getAdditionalData(uint16_t& size) const {
    size = getAddDataSize();
    return record_.data() + kFixedSize;
}

void TransferPack::dump(std::FILE* output) const {
    std::fputs("\nNew TransferPack\n", output);
    std::fprintf(output, "Status:             %4x\n", getStatus());
    std::fprintf(output, "Version:            %4x\n", getVersion());
    std::fprintf(output, "DataSize            %4x\n", getDataSize());
    std::fprintf(output, "Mode                %4x\n", getMode());
    std::fprintf(output, "TPLevel             %4x\n", getTPLevel());
    std::fprintf(output, "AddDataSize         %4x\n", getAddDataSize());
    for (const DumpedBytes& dumped : kDumpedBytes)
        dumpBytes(output, dumped.label, dumped.field.offset, dumped.field.length);
    dumpToken(output, "Token 1:             ", packField::kToken1);
    dumpToken(output, "Token 2:             ", packField::kToken2);
}

uint16_t TransferPack::readNumber(const TransferPackField& field) const {
    return loadLittleEndian16(record_.data() + field.offset);
}

void TransferPack::dumpBytes(std::FILE* output, const char* label, uint32_t offset, uint32_t length) const {
    std::fprintf(output, "%s ", label);
    for (uint32_t i = 0; i < length; ++i)
        std::fprintf(output, "%2x ", static_cast<unsigned>(record_.getByte(offset + i)));
    std::fputc('\n', output);
}

void TransferPack::dumpToken(std::FILE* output, const char* label, const TransferPackField& field) const {
    dumpBytes(output, label, field.offset, std::min<uint32_t>(record_.getByte(field.offset), field.length));
}

}  // namespace dovrel
