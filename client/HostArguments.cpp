#include "client/HostArguments.h"

#include <limits>
#include <new>

#include "client/exceptions/CPPException.h"
#include "settings/MultiLanguageSupport.h"
#include "settings/TextKeys.h"

namespace dovrel {

void requireNonNull(const void* pointer) {
    if (pointer == nullptr) {
        throw new CPPException(MultiLanguageSupport::getText(kDllNullPointerPassed).c_str());
    }
}

void requireBytes(const void* bytes, uint32_t length) {
    if (length != 0) requireNonNull(bytes);
}

const uint8_t* bytesOfHandle(void* const* handle, uint32_t length) {
    requireNonNull(handle);
    requireBytes(*handle, length);
    return static_cast<const uint8_t*>(*handle);
}

CPPByteArray copyOfBytes(const void* bytes, uint32_t length) {
    CPPByteArray copy;
    copy.set(bytes, length);
    // set() does not report an allocation failure; the size shows it.
    if (copy.getSize() != length) throw std::bad_alloc();
    return copy;
}

bool namesExecuter(void* const* executerId) {
    return executerId != nullptr && *executerId != nullptr;
}

std::vector<CPPClassID> classesOfList(void* const* classList, uint32_t count) {
    requireBytes(classList, count);
    std::vector<CPPClassID> classes;
    classes.reserve(count);
    for (uint32_t index = 0; index < count; ++index) {
        classes.push_back(identifierOfHandle<CPPClassID>(classList + index));
    }
    return classes;
}

int32_t signedLength(uint32_t length) {
    if (length > uint32_t{std::numeric_limits<int32_t>::max()}) {
        throw new CPPException(MultiLanguageSupport::getText(kDllInformationTooLong).c_str());
    }
    return static_cast<int32_t>(length);
}

}  // namespace dovrel
