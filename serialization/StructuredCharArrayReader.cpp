#include "serialization/StructuredCharArrayReader.h"

#include <new>
#include <utility>

namespace dovrel {

StructuredCharArrayReader::~StructuredCharArrayReader() = default;

void StructuredCharArrayReader::setBuffer(const void* buffer, uint32_t length) {
    auto copy = std::make_unique<CPPByteArray>();
    copy->set(buffer, length);
    // An allocation failure must not be reported as a damaged block.
    if (copy->getSize() != length) throw std::bad_alloc();
    ownCopy_ = std::move(copy);
    initialize(ownCopy_.get());
}

}  // namespace dovrel
