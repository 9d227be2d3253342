#include "client/HostArguments.h"

#include <cstdlib>
#include <limits>
#include <new>
#include <optional>

#include "client/exceptions/CPPException.h"
#include "settings/MultiLanguageSupport.h"
#include "settings/TextKeys.h"

namespace dovrel {

namespace {

std::optional<ProtectedExecuterID> copyExecuter(void* const* executerId) {
    if (executerId == nullptr || *executerId == nullptr) return std::nullopt;
    return copyIdentifier<ProtectedExecuterID>(executerId);
}

}  // namespace

void requireNonNull(const void* pointer) {
    if (pointer == nullptr) {
        throw new CPPException(MultiLanguageSupport::getText(kDllNullPointerPassed).c_str());
    }
}

ByteView viewBytes(const void* bytes, uint32_t length) {
    if (length != 0) requireNonNull(bytes);
    return {static_cast<const uint8_t*>(bytes), length};
}

ByteView viewHandle(void* const* handle, uint32_t length) {
    requireNonNull(handle);
    return viewBytes(*handle, length);
}

CPPByteArray copyBytes(const void* bytes, uint32_t length) {
    CPPByteArray copy;
    copy.setOrThrow(bytes, length);
    return copy;
}

std::vector<CPPClassID> copyClassList(void* const* classList, uint32_t count) {
    if (count != 0) requireNonNull(classList);
    std::vector<CPPClassID> classes;
    classes.reserve(count);
    for (uint32_t index = 0; index < count; ++index) {
        classes.push_back(copyIdentifier<CPPClassID>(classList + index));
    }
    return classes;
}

// The values are constructed in place, because the assignment of an identifier does not report that memory
// ran out.
MethodCall makeMethodCall(void* const* executerId, void* const* objectId, const char* methodName,
                          const uint8_t* parameters, uint32_t parameterLength) {
    requireNonNull(methodName);
    return {copyIdentifier<CPPObjectID>(objectId), copyExecuter(executerId), methodName,
            viewBytes(parameters, parameterLength)};
}

Command makeCommand(void* const* command, uint32_t commandLength, void* const* argument,
                    uint32_t argumentLength) {
    return {viewHandle(command, commandLength), viewHandle(argument, argumentLength)};
}

void FreeBlock::operator()(void* block) const {
    std::free(block);
}

ObjectIdBlock allocateObjectId() {
    ObjectIdBlock block(std::malloc(POS_IDENTIFIER_SIZE));
    if (!block) throw std::bad_alloc();
    return block;
}

void giveToHost(ByteBlock block, uint8_t** hostBlock, uint32_t* hostLength) noexcept {
    *hostLength = block.length;
    *hostBlock = block.data.release();
}

void giveToHost(ByteBlock block, uint8_t** hostBlock, int32_t* hostLength) {
    if (block.length > uint32_t{std::numeric_limits<int32_t>::max()}) {
        throw new CPPException(MultiLanguageSupport::getText(kDllInformationTooLong).c_str());
    }
    *hostLength = static_cast<int32_t>(block.length);
    *hostBlock = block.data.release();
}

}  // namespace dovrel
