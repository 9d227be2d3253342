// Converts byte arrays from and to readable text, and checks serialization failures.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "client/exceptions/CPPException.h"
#include "serialization/CPPByteArray.h"
#include "serialization/CPPExpandingByteArray.h"

namespace dovrel::test {

/// Returns the characters without a terminating NUL.
CPPByteArray arrayOf(std::string_view text);
CPPExpandingByteArray expandingArrayOf(std::string_view text);

/// Returns an array of that size that cannot grow, filled with EE.
CPPByteArray plainArray(uint32_t size);

/// Returns the bytes of hexadecimal digit pairs, with or without blanks between them: "41 73 41 6B".
CPPByteArray arrayOfHex(std::string_view digits);

std::string textOf(const CPPByteArray& array);

/// Returns upper-case digits with a blank between the bytes; "" for an empty array.
std::string hexOf(const CPPByteArray& array);

/// Runs the operation. It must throw exactly an Exception with these texts (null for none) and code 0.
template <class Exception, class Operation>
void expectFailure(Operation operation, uint32_t typeCode, const char* detail, const char* message) {
    try {
        operation();
    } catch (CPPException* caught) {
        const std::unique_ptr<CPPException> failure(caught);
        EXPECT_NE(dynamic_cast<Exception*>(caught), nullptr);
        EXPECT_EQ(failure->getTypeCode(), typeCode);
        EXPECT_STREQ(failure->getDetail(), detail);
        EXPECT_STREQ(failure->getMessage(), message);
        EXPECT_EQ(failure->getCode(), 0);
        return;
    }
    ADD_FAILURE() << "nothing was thrown";
}

}  // namespace dovrel::test
