// Catches the failure that a call throws by pointer.
#pragma once

#include <memory>

#include "client/exceptions/CPPException.h"

namespace dovrel::test {

/// Returns the failure (of type Failure or a derived type) that `call` threw; null if it threw none.
template <class Failure = CPPException, class Call>
std::unique_ptr<Failure> failureOf(Call call) {
    try {
        call();
    } catch (Failure* caught) {
        return std::unique_ptr<Failure>(caught);
    }
    return nullptr;
}

}  // namespace dovrel::test
