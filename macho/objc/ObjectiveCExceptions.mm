#include "macho/objc/ObjectiveCExceptions.h"

#include <objc/runtime.h>
#include <unwind.h>

#include <cstdint>
#include <vector>

namespace dovrel::macho {

namespace {

constexpr uint64_t kRuntimesOwn = 0x474E55434F424A43;  // "GNUCOBJC"

// The first members of the runtime's exception.
struct RuntimeException {
    _Unwind_Exception base;
    id object;
};

// A stack, because handlers can be nested.
thread_local std::vector<_Unwind_Exception*> caught;

}  // namespace

void* beginCatch(void* unwindException) {
    auto* const exception = static_cast<_Unwind_Exception*>(unwindException);
    caught.push_back(exception);
    const bool isRuntimesOwn = exception->exception_class == kRuntimesOwn;
    return isRuntimesOwn ? (void*)reinterpret_cast<RuntimeException*>(exception)->object : nullptr;
}

void endCatch() {
    _Unwind_Exception* const exception = caught.back();
    caught.pop_back();
    _Unwind_DeleteException(exception);
}

}  // namespace dovrel::macho
