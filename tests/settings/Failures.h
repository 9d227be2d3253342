// The message and the detail of a failure that an operation throws, so that a test compares them in one line.
#pragma once

#include <memory>
#include <string>

#include "client/exceptions/CPPException.h"

namespace dovrel::test {

/// The message of the CPPException that `operation` throws, checked to have the detail and the code that
/// every failure of the settings has; "(nothing thrown)" when it throws none.
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
