#include "tools/decode/FieldValue.h"

#include "InterProcessCommunication/TransferObjText.h"
#include "platform/trace/TraceText.h"
#include "serialization/ByteOrder.h"
#include "serialization/StructuredDataFormat.h"

namespace dovrel::tools {

namespace {

constexpr uint32_t kNumberLength = 4;
constexpr uint32_t kOptionLength = 2;

// Returns the meaning of a number, or "".
std::string meaningText(const POSField& field, uint32_t value) {
    if (field.number == posField::kMessageKind.number) return messageKindText(value);
    if (field.number == posField::kCommand.number) {
        const POSCommand* const command = findPOSCommand(value);
        return command != nullptr ? command->name : "unknown";
    }
    if (field.number == posField::kExecuterWord.number && value == kNoExecuter) return "no executer";
    return "";
}

std::string numberText(const POSField& field, uint32_t value) {
    if (field.number == posField::kExceptionCode.number) return errorCodeText(value);
    const std::string meaning = meaningText(field, value);
    return std::to_string(value) + (meaning.empty() ? "" : " (" + meaning + ")");
}

uint32_t dataOffset(const DecodedItem& part) {
    return part.offset + structuredData::kPartHeaderSize;
}

DecodedItem numberItem(const DecodedItem& part, uint32_t at, uint32_t length, const char* name,
                       uint32_t value) {
    DecodedItem item;
    item.offset = dataOffset(part) + at;
    item.length = length;
    item.name = name;
    item.value = value;
    item.text = std::to_string(value);
    item.data = {part.data.data + at, length};
    return item;
}

void addOptions(DecodedItem& part) {
    for (uint32_t at = 0; part.data.length - at >= kOptionLength; at += kOptionLength)
        part.items.push_back(
            numberItem(part, at, kOptionLength, "option", loadLittleEndian16(part.data.data + at)));
}

void addFlags(DecodedItem& part) {
    if (part.data.length < kNumberLength) return;
    part.items.push_back(numberItem(part, 0, kNumberLength, "flags", loadLittleEndian32(part.data.data)));
}

void addServerMessage(DecodedItem& part) {
    addFlags(part);
    if (part.data.length <= kNumberLength) return;
    DecodedItem text;
    text.offset = dataOffset(part) + kNumberLength;
    text.length = part.data.length - kNumberLength;
    text.name = "text";
    text.data = {part.data.data + kNumberLength, text.length};
    text.text = '"' + traceOneLineText(std::string(text.data.data, text.data.data + text.length)) + '"';
    part.items.push_back(text);
}

void addNumbersInside(DecodedItem& part, const POSField& field) {
    if (field.number == posField::kOptions.number) addOptions(part);
    if (field.number == posField::kRegistrationFlags.number) addFlags(part);
    if (field.number == posField::kServerMessage.number) addServerMessage(part);
}

// Adds findings if the data do not have the form of the field.
void checkForm(const DecodedItem& part, const POSField& field, Decoded& result) {
    const std::string start = std::string(field.name) + " has " + byteCountText(part.data.length);
    const bool isIdentifier = part.data.length == kPOSIdentifierSize;
    const std::string identifierProblem =
        start + ", but an identifier has " + std::to_string(kPOSIdentifierSize);
    switch (field.form) {
        case POSFieldForm::kUInt32:
            if (part.data.length < kNumberLength)
                result.addNote(part.offset, start + "; readers add zero bytes to make 4");
            if (part.data.length > kNumberLength)
                result.addNote(part.offset, start + "; readers use the first 4");
            return;
        case POSFieldForm::kIdentifier:
            if (!isIdentifier) result.addProblem(part.offset, identifierProblem);
            return;
        case POSFieldForm::kOptionalIdentifier:
            if (!isIdentifier && part.data.length != 0) result.addProblem(part.offset, identifierProblem);
            return;
        case POSFieldForm::kName:
            if (part.data.length == 0 || part.data.data[part.data.length - 1] != 0)
                result.addProblem(part.offset,
                                  std::string(field.name) + " does not end with a zero byte, as names do");
            return;
        case POSFieldForm::kText:
        case POSFieldForm::kData:
            return;
    }
}

}  // namespace

std::string messageKindText(uint32_t messageKind) {
    if (messageKind == kMessageKindException) return "exception reply";
    return messageKind == kMessageKindRequest ? "request" : "normal reply";
}

void describeField(DecodedItem& part, const POSField& field, uint32_t mostBytes, Decoded& result) {
    part.name = field.name;
    if (field.form == POSFieldForm::kUInt32) {
        part.value = fieldNumber(part.data);
        part.text = numberText(field, *part.value);
    } else {
        part.text = fieldText(field, part.data, mostBytes);
    }
    addNumbersInside(part, field);
    checkForm(part, field, result);
}

}  // namespace dovrel::tools
