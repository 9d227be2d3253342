#include "tools/decode/FieldNames.h"

#include <algorithm>

#include "InterProcessCommunication/POSCommands.h"
#include "InterProcessCommunication/TransferObjText.h"
#include "platform/trace/TraceText.h"
#include "tools/decode/FieldValue.h"

namespace dovrel::tools {

namespace {

constexpr POSField kHeaderFields[] = {posField::kTransferKind, posField::kMessageKind, posField::kReserved,
                                      posField::kCommand};
constexpr POSFieldList kNoFields{};
constexpr POSFieldList kExceptionFields{posField::kExceptionText, posField::kExceptionCode};

// The message kind and the command of a transfer object.
struct Message {
    std::optional<uint32_t> kind;
    std::optional<uint32_t> commandCode;
    const POSCommand* command = nullptr;

    bool isRequest() const { return kind == kMessageKindRequest; }
    bool isException() const { return kind == kMessageKindException; }

    const POSFieldList& fields() const {
        if (isException()) return kExceptionFields;
        if (!kind || command == nullptr) return kNoFields;
        return isRequest() ? command->request : command->reply;
    }
};

const POSField* findField(const POSFieldList& fields, uint32_t number) {
    const auto found = std::find_if(fields.begin(), fields.end(),
                                    [number](const POSField& field) { return field.number == number; });
    return found != fields.end() ? found : nullptr;
}

const POSField* findHeaderField(uint32_t number) {
    for (const POSField& field : kHeaderFields)
        if (field.number == number) return &field;
    return nullptr;
}

// Looks for a field that the message should not contain.
const POSField* findFieldOfOtherMessages(uint32_t number) {
    for (const POSCommand& command : kPOSCommands) {
        for (const POSFieldList* fields : {&command.request, &command.reply})
            if (const POSField* field = findField(*fields, number)) return field;
    }
    return findField(kExceptionFields, number);
}

const DecodedItem* findPart(const std::vector<DecodedItem>& parts, uint32_t number) {
    for (const DecodedItem& part : parts)
        if (part.number == number) return &part;
    return nullptr;
}

std::optional<uint32_t> readNumber(const std::vector<DecodedItem>& parts, const POSField& field) {
    const DecodedItem* const part = findPart(parts, field);
    if (part == nullptr) return std::nullopt;
    return fieldNumber(part->data);
}

Message readMessage(const std::vector<DecodedItem>& parts) {
    Message message;
    message.kind = readNumber(parts, posField::kMessageKind);
    message.commandCode = readNumber(parts, posField::kCommand);
    if (message.commandCode) message.command = findPOSCommand(*message.commandCode);
    return message;
}

std::string commandText(const Message& message) {
    if (message.command != nullptr) return message.command->name;
    return message.commandCode ? "unknown command " + std::to_string(*message.commandCode) : "no command";
}

// Returns the field with the number of the part. Adds a note if the message should not contain it.
const POSField* identifyField(const DecodedItem& part, const Message& message, Decoded& result) {
    const uint32_t number = *part.number;
    if (const POSField* field = findHeaderField(number)) {
        if (number == posField::kReserved.number)
            result.addNote(part.offset, "field 2 is reserved and is never written");
        return field;
    }
    if (const POSField* field = findField(message.fields(), number)) return field;
    const bool hasFields = message.kind && (message.command != nullptr || message.isException());
    if (hasFields) {
        result.addNote(part.offset, "field " + std::to_string(number) + " is not a field of this " +
                                        (message.isRequest() ? "request" : "reply"));
    }
    return findFieldOfOtherMessages(number);
}

void addMissing(const POSField& field, bool isNeeded, uint32_t end, Decoded& result) {
    const std::string text =
        "field " + std::to_string(field.number) + " (" + std::string(field.name) + ") is missing";
    if (isNeeded) {
        result.addProblem(end, text);
    } else {
        result.addNote(end, text + "; readers ignore it in a reply");
    }
}

void findMissingFields(const std::vector<DecodedItem>& parts, const Message& message, uint32_t end,
                       Decoded& result) {
    for (const POSField& field : {posField::kTransferKind, posField::kMessageKind, posField::kCommand}) {
        const bool isNeeded = message.isRequest() || field.number == posField::kMessageKind.number;
        if (findPart(parts, field) == nullptr) addMissing(field, isNeeded, end, result);
    }
    for (const POSField& field : message.fields())
        if (findPart(parts, field) == nullptr) addMissing(field, true, end, result);
}

}  // namespace

std::string describeFields(std::vector<DecodedItem>& parts, uint32_t end, bool isComplete, uint32_t mostBytes,
                           Decoded& result) {
    const Message message = readMessage(parts);
    for (DecodedItem& part : parts) {
        const POSField* const field = identifyField(part, message, result);
        if (field != nullptr) describeField(part, *field, mostBytes, result);
        const bool isUnknownRequest = field != nullptr && field->number == posField::kCommand.number &&
                                      message.isRequest() && message.command == nullptr;
        if (isUnknownRequest)
            result.addProblem(part.offset, "no command has the code " + std::to_string(*part.value));
    }
    if (isComplete) findMissingFields(parts, message, end, result);
    const std::string kind = message.kind ? messageKindText(*message.kind) : "message of unknown kind";
    return kind + ", " + commandText(message);
}

bool isClassList(const DecodedItem& part) {
    return part.number == posField::kClassList.number;
}

void checkClassList(const std::vector<DecodedItem>& elements, Decoded& result) {
    for (const DecodedItem& element : elements) {
        const bool isElement = element.name.rfind("element ", 0) == 0;
        if (isElement && element.data.length != kPOSIdentifierSize)
            result.addProblem(element.offset,
                              element.name + " of the class list has " + byteCountText(element.data.length) +
                                  ", but an identifier has " + std::to_string(kPOSIdentifierSize));
    }
}

}  // namespace dovrel::tools
