#include "serialization/ByteArrayList.h"

#include <memory>
#include <utility>

#include "serialization/StructuredByteArrayReader.h"
#include "serialization/StructuredByteArrayWriter.h"
#include "serialization/StructuredDataFormat.h"

namespace dovrel {
namespace {

template <typename Element>
uint64_t blockSize(const std::vector<Element>& list) {
    using namespace structuredData;
    uint64_t size = kHeaderSize + kPartHeaderSize + sizeof(uint32_t);
    for (const Element& element : list)
        size += uint64_t{kPartHeaderSize} + element.getSize();
    return size;
}

template <typename Element>
void writeElements(const std::vector<Element>& list, CPPByteArray& target) {
    StructuredByteArrayWriter writer;
    writer.initialize(target, kByteArrayListType);
    writer.growTo(blockSize(list));
    const auto count = static_cast<uint32_t>(list.size());
    writer.writeUInt32Part(kByteArrayListCountTag, count);
    for (uint32_t i = 0; i < count; ++i) {
        writer.writeArrayPart(byteArrayListElementTag(i), list[i]);
    }
}

}  // namespace

void writeByteArrayList(const std::vector<CPPByteArray>& list, CPPByteArray& target) {
    writeElements(list, target);
}

void writeByteArrayList(const std::vector<CPPClassID>& list, CPPByteArray& target) {
    writeElements(list, target);
}

void readByteArrayList(const StructuredDataReader& reader, std::vector<CPPByteArray>& list) {
    list.clear();
    const uint32_t count = reader.readUInt32Part(kByteArrayListCountTag);
    for (uint32_t i = 0; i < count; ++i) {
        const std::unique_ptr<CPPByteArray> element(reader.getPart(byteArrayListElementTag(i)));
        list.push_back(std::move(*element));
    }
}

void readByteArrayList(const CPPByteArray& block, std::vector<CPPByteArray>& list) {
    list.clear();
    StructuredByteArrayReader reader;
    reader.initialize(&block);
    readByteArrayList(reader, list);
}

}  // namespace dovrel
