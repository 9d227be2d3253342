// Calls the code of classes. Their authors may have overlooked exceptions, and an exception must not end an
// exchange without a reply.
#pragma once

#include <cstdint>
#include <string>

#include "server/MethodResult.h"

namespace merrowd {

/// Thrown (by value) in place of an exception that is not a Refusal. The text names the code that threw it.
struct EscapedException : Refusal {};

/// For use in a catch block: throws an EscapedException with this code. Its text begins with `operation` and
/// ends with the message of the exception that is being handled. That can be a std::exception, a pointer to a
/// CPPException (which is deleted), or anything else.
[[noreturn]] void throwEscapedException(uint32_t code, const std::string& operation);

/// Returns the result of `work`. A Refusal that `work` throws reaches the caller; every other exception
/// becomes an EscapedException, whose text begins with the text that `describe()` returns.
template <class Describe, class Work>
auto runClassCode(uint32_t code, const Describe& describe, const Work& work) {
    try {
        return work();
    } catch (const Refusal&) {
        throw;
    } catch (...) {
        throwEscapedException(code, describe());
    }
}

}  // namespace merrowd
