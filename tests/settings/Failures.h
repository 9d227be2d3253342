// Returns the message of a failure that an operation throws, so that a test can check it in one line.
#pragma once

#include <memory>
#include <string>

#include "client/exceptions/CPPException.h"

namespace dovrel::test {

/// Returns the message of the CPPException that `operation` throws, or "(nothing thrown)". Also checks that
/// the exception has the detail and the code that all failures of the settings have.
template <typename Operation>
std::string failureOf(Operation operation) {
    try {
        operation();
    } catch (CPPException* caught) {
        const std::unique_ptr<CPPException> failure(caught);
        if (std::string(failure->getDetail()) != "???" || failure->getCode() != 0)
            return "(wrong detail or code)";
        return failure->getMessage();
    }
    return "(nothing thrown)";
}

}  // namespace dovrel::test
