#include "macho/objc/LegacyTry.h"

#include <objc/message.h>
#include <unwind.h>

#include <cstdio>
#include <cstdlib>
#include <vector>

#include "macho/objc/ObjectiveCExceptions.h"

namespace {

// The buffer that macho_setjmp fills.
struct JumpBuffer {
    uint32_t registers[4];
    uintptr_t stack;
    uintptr_t next;
};

struct OpenTry {
    const JumpBuffer* buffer;
    size_t guards;  // number of guards when the block began
};

thread_local std::vector<OpenTry> openTries;
// The return addresses of methods that were called inside @try and have not returned.
thread_local std::vector<uintptr_t> guards;

constexpr int kExceptionRegister = 0;  // eax

[[noreturn]] void fail(const char* reason) {
    std::fprintf(stderr, "%s\n", reason);
    std::abort();
}

}  // namespace

namespace dovrel::macho {

void enterTry(void* buffer) { openTries.push_back({static_cast<const JumpBuffer*>(buffer), guards.size()}); }

void leaveTry(void*) { openTries.pop_back(); }

}  // namespace dovrel::macho

// Defined in LegacyMessageSend.S.
extern "C" {
extern const char macho_guardedReturn[];
extern const char macho_guardedCatch[];
[[noreturn]] void macho_longjmp(const void* buffer);
}

// For functions that only LegacyMessageSend.S calls. Without "used" the compiler would remove them.
#define FOR_ASSEMBLY extern "C" __attribute__((visibility("hidden"), used))

// Returns the method. Inside @try, replaces its return address.
FOR_ASSEMBLY IMP macho_methodInTry(id receiver, SEL selector, uintptr_t* returnAddress) {
    const IMP method = objc_msg_lookup(receiver, selector);
    if (!openTries.empty()) {
        guards.push_back(*returnAddress);
        *returnAddress = reinterpret_cast<uintptr_t>(macho_guardedReturn);
    }
    return method;
}

// Called after the method has returned. Returns the original return address.
FOR_ASSEMBLY uintptr_t macho_endGuard() {
    const uintptr_t returnAddress = guards.back();
    guards.pop_back();
    return returnAddress;
}

FOR_ASSEMBLY _Unwind_Reason_Code macho_tryPersonality(int, _Unwind_Action actions, _Unwind_Exception_Class,
                                                      _Unwind_Exception* exception,
                                                      _Unwind_Context* context) {
    if ((actions & _UA_SEARCH_PHASE) != 0) return _URC_HANDLER_FOUND;
    if ((actions & _UA_HANDLER_FRAME) == 0) fail("a thread that ends unwinds a @try");
    _Unwind_SetGR(context, kExceptionRegister, reinterpret_cast<_Unwind_Word>(exception));
    _Unwind_SetIP(context, reinterpret_cast<_Unwind_Ptr>(macho_guardedCatch));
    return _URC_INSTALL_CONTEXT;
}

// Continues in the innermost handler, as if its setjmp had returned. The stack above it is unchanged.
FOR_ASSEMBLY void macho_continueInHandler(_Unwind_Exception* exception, uintptr_t stack) {
    // A function that is not a method, called in a block inside this call, would throw past that block.
    if (openTries.empty() || openTries.back().buffer->stack < stack)
        fail("what a @try of the bundle called was no method, and threw an exception");
    if (dovrel::macho::beginCatch(exception) == nullptr)
        fail("an exception that is not of Objective-C has left a @try of the bundle");
    const OpenTry handler = openTries.back();
    openTries.pop_back();
    guards.resize(handler.guards);
    dovrel::macho::endCatch();
    macho_longjmp(handler.buffer);
}
