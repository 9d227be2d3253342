// Catches the failures that the library throws by pointer, so that a test can look at them.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "client/exceptions/CPPException.h"

namespace dovrel::test {

/// Returns the failure (of type Failure or a derived type) that the operation throws; null if it returns.
/// Exceptions of other types pass.
template <class Failure = CPPException, class Operation>
std::unique_ptr<Failure> failureOf(const Operation& operation) {
    try {
        operation();
    } catch (Failure* caught) {
        return std::unique_ptr<Failure>(caught);
    }
    return nullptr;
}

/// Returns the message of the failure that the operation throws, or "(nothing thrown)". If the failure's detail is
/// not "???" or its code is not 0, they follow the message.
template <class Operation>
std::string failureText(const Operation& operation) {
    const std::unique_ptr<CPPException> failure = failureOf(operation);
    if (failure == nullptr) return "(nothing thrown)";
    const std::string message = failure->getMessage() == nullptr ? "(no message)" : failure->getMessage();
    const std::string detail = failure->getDetail() == nullptr ? "(no detail)" : failure->getDetail();
    if (detail == "???" && failure->getCode() == 0) return message;
    return message + ", detail " + detail + ", code " + std::to_string(failure->getCode());
}

/// Expects that the operation throws exactly an Exception with these texts (null for none) and code 0.
template <class Exception, class Operation>
void expectFailure(const Operation& operation, uint32_t typeCode, const char* detail, const char* message) {
    const std::unique_ptr<CPPException> failure = failureOf(operation);
    ASSERT_NE(failure, nullptr) << "nothing was thrown";
    EXPECT_NE(dynamic_cast<Exception*>(failure.get()), nullptr);
    EXPECT_EQ(failure->getTypeCode(), typeCode);
    EXPECT_STREQ(failure->getDetail(), detail);
    EXPECT_STREQ(failure->getMessage(), message);
    EXPECT_EQ(failure->getCode(), 0);
}

}  // namespace dovrel::test
