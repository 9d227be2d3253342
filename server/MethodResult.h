// What the server's operations return: a result, or a Refusal that they throw.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <utility>

#include "client/exceptions/ExceptionTypeCodes.h"
#include "platform/text/TextConversions.h"
#include "serialization/CPPByteArray.h"

namespace merrowd {

using dovrel::bytesToText;
using dovrel::CPPByteArray;
namespace refusalCode = dovrel::exceptionTypeCode;

/// The identifier of a class, an object or an executer in requests and replies.
using Identifier = std::array<uint8_t, 16>;

/// A text that the client shows to the user after a successful operation. Flags of 0 mean that there is
/// no message.
struct UserMessage {
    uint32_t flags = 0;
    std::string text;
};

/// The result of a method or a command.
struct MethodResult {
    MethodResult() = default;
    explicit MethodResult(CPPByteArray bytes) : data(std::move(bytes)) {}

    CPPByteArray data;
    UserMessage message;
};

/// Thrown (by value) when the server does not do what the client asked for. The code is sent to the client,
/// which throws an exception for it. The text is shown to the user.
struct Refusal {
    uint32_t code;
    std::string text;
};

/// Returns the bytes of a text. bytesToText is the reverse.
CPPByteArray toBytes(const std::string& text);

/// Returns a number as 4 bytes, least significant byte first.
CPPByteArray numberToBytes(uint32_t number);

/// Returns the number in an argument of exactly 4 bytes. Throws Refusal (parameter format) for any other length.
uint32_t parseNumber(const CPPByteArray& argument);

/// Throws Refusal (parameter format) if the argument is not empty. For methods that take no argument.
void requireNoArgument(const CPPByteArray& argument);

}  // namespace merrowd
