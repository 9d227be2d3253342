// What an operation of the server gives back, and how it says no.
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

/// The name of a class, an object or an executer on the wire.
using Identifier = std::array<uint8_t, 16>;

/// A text that the client shows to the user after an operation that went well. Flags of 0 mean no message.
struct UserMessage {
    uint32_t flags = 0;
    std::string text;
};

/// The result of a method or a command.
struct Answer {
    Answer() = default;
    explicit Answer(CPPByteArray bytes) : data(std::move(bytes)) {}

    CPPByteArray data;
    UserMessage message;
};

/// Thrown (by value) wherever the server does not do what it was asked for. The code travels to the client,
/// which makes an exception of it; the text is shown to the user.
struct Refusal {
    uint32_t code;
    std::string text;
};

/// The bytes of a text; bytesToText is the way back.
CPPByteArray bytesOf(const std::string& text);

/// A number as 4 bytes, the least significant first.
CPPByteArray bytesOfNumber(uint32_t number);

/// The number in an argument of exactly 4 bytes; any other length is refused as a parameter in the wrong
/// form.
uint32_t numberOf(const CPPByteArray& argument);

/// Refuses an argument where the method takes none.
void requireNoArgument(const CPPByteArray& argument);

}  // namespace merrowd
