#include "serialization/StructuredCharArrayReader.h"

#include <utility>

namespace dovrel {

StructuredCharArrayReader::~StructuredCharArrayReader() = default;

void StructuredCharArrayReader::setBuffer(const void* buffer, uint32_t length) {
    auto copy = std::make_unique<CPPByteArray>();
    copy->setOrThrow(buffer, length);
    ownCopy_ = std::move(copy);
    initialize(ownCopy_.get());
}

}  // namespace dovrel
