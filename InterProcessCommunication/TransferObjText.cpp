#include "InterProcessCommunication/TransferObjText.h"

#include <algorithm>
#include <memory>

#include "InterProcessCommunication/POSTransferObj.h"
#include "client/exceptions/CPPException.h"
#include "client/exceptions/ExceptionTypeNames.h"
#include "platform/text/TextConversions.h"
#include "platform/trace/TraceText.h"

namespace dovrel {

namespace {

std::string quoted(const std::string& text) {
    return '"' + text + '"';
}

std::string dataText(const CPPByteArray& bytes) {
    return traceDataText(bytes.data(), bytes.getSize());
}

std::string valueText(POSTransferObj& object, const POSField& field) {
    switch (field.form) {
        case POSFieldForm::kUInt32:
            return std::to_string(object.readUInt32(field));
        case POSFieldForm::kName:
        case POSFieldForm::kText: {
            std::string text = object.readString(field);
            if (field.form == POSFieldForm::kName && !text.empty() && text.back() == '\0') text.pop_back();
            return quoted(traceOneLineText(text));
        }
        case POSFieldForm::kIdentifier:
        case POSFieldForm::kOptionalIdentifier:
        case POSFieldForm::kData:
            break;
    }
    return dataText(*object.readByteArray(field));
}

void appendField(std::string& lines, POSTransferObj& object, const POSField& field, const std::string& mark) {
    if (!object.hasField(field)) return;
    lines += mark + std::to_string(field.number) + " " + field.name + " = " + valueText(object, field) + "\n";
}

// Returns what `read` returns for the object, or `otherwise` if the bytes cannot be read.
template <typename Result, typename Read>
Result readOr(const CPPByteArray& bytes, const Result& otherwise, Read read) {
    try {
        POSTransferObj object;
        object.copyBytesFrom(bytes);
        return read(object);
    } catch (CPPException* caught) {
        std::unique_ptr<CPPException> failure(caught);
        return otherwise;
    }
}

std::string fieldLines(POSTransferObj& object, const std::string& mark) {
    std::string lines;
    const uint32_t kind = object.getMessageKind();
    if (kind == kMessageKindException) {
        appendField(lines, object, posField::kExceptionText, mark);
        appendField(lines, object, posField::kExceptionCode, mark);
        return lines;
    }
    const POSCommand* command = findPOSCommand(object.getCommand());
    if (command == nullptr) return lines;
    const bool isRequest = kind == kMessageKindRequest;
    for (const POSField& field : isRequest ? command->request : command->reply)
        appendField(lines, object, field, mark);
    return lines;
}

}  // namespace

std::string transferObjText(const CPPByteArray& transferObject, const std::string& mark) {
    const std::string asBytes = mark + dataText(transferObject) + "\n";
    return readOr(transferObject, asBytes,
                  [&mark](POSTransferObj& object) { return fieldLines(object, mark); });
}

std::string readCommandName(const CPPByteArray& transferObject) {
    const POSCommand* command = findPOSCommand(readCommandCode(transferObject));
    return command == nullptr ? "unknown command" : command->name;
}

std::string requestSummary(const CPPByteArray& request) {
    const std::string command = readCommandName(request);
    return readOr(request, command, [&command](POSTransferObj& object) {
        std::string text = command;
        for (const POSField& field : {posField::kClass, posField::kMethodName})
            if (object.hasField(field))
                text += ", " + std::string(field.name) + " = " + valueText(object, field);
        return text;
    });
}

std::string errorCodeText(uint32_t errorCode) {
    const char* const name = serverErrorName(errorCode);
    return std::to_string(errorCode) + " (" + (name != nullptr ? name : "unknown") + ")";
}

uint32_t readCommandCode(const CPPByteArray& transferObject) {
    return readOr(transferObject, 0u, [](POSTransferObj& object) { return object.getCommand(); });
}

}  // namespace dovrel
