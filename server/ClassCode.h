// Calls into the code of classes, which their authors may have written in a hurry: what they let out must not
// end an exchange without a reply.
#pragma once

#include <cstdint>
#include <string>

#include "server/Answer.h"

namespace merrowd {

/// Thrown (by value) in place of an exception that is not a Refusal. The text says where it came from.
struct EscapedException : Refusal {};

/// For use in a catch block: throws an EscapedException with this code. Its text begins with `operation` and
/// ends with the message of the exception that is being handled: a std::exception, a CPPException by pointer
/// (which is deleted), or anything else.
[[noreturn]] void throwEscapedException(uint32_t code, const std::string& operation);

/// Returns what `work` returns. Its Refusals pass through; all other exceptions become an EscapedException.
template <class Work>
auto runClassCode(uint32_t code, const std::string& operation, const Work& work) {
    try {
        return work();
    } catch (const Refusal&) {
        throw;
    } catch (...) {
        throwEscapedException(code, operation);
    }
}

}  // namespace merrowd
