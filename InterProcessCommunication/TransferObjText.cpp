#include "InterProcessCommunication/TransferObjText.h"

#include <algorithm>
#include <memory>

#include "InterProcessCommunication/POSTransferObj.h"
#include "client/exceptions/CPPException.h"
#include "client/exceptions/ExceptionTypeNames.h"
#include "platform/text/TextConversions.h"
#include "platform/trace/TraceText.h"
#include "serialization/ByteOrder.h"

namespace dovrel {

namespace {

std::string quoted(const std::string& text) {
    return '"' + text + '"';
}

std::string valueText(POSTransferObj& object, const POSField& field) {
    const ByteBlock data = object.readBlock(field);
    return fieldText(field, {data.data.get(), data.length});
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

std::string fieldText(const POSField& field, ByteView data, uint32_t mostBytes) {
    switch (field.form) {
        case POSFieldForm::kUInt32:
            return std::to_string(fieldNumber(data));
        case POSFieldForm::kName:
        case POSFieldForm::kText: {
            std::string text(data.data, data.data + data.length);
            if (field.form == POSFieldForm::kName && !text.empty() && text.back() == '\0') text.pop_back();
            return quoted(traceOneLineText(text));
        }
        case POSFieldForm::kIdentifier:
        case POSFieldForm::kOptionalIdentifier:
        case POSFieldForm::kData:
            break;
    }
    return traceDataText(data.data, data.length, mostBytes);
}

uint32_t fieldNumber(ByteView data) {
    uint8_t bytes[4] = {};
    std::copy_n(data.data, std::min<size_t>(data.length, sizeof bytes), bytes);
    return loadLittleEndian32(bytes);
}

std::string transferObjText(const CPPByteArray& transferObject, const std::string& mark) {
    const std::string asBytes = mark + traceDataText(transferObject.data(), transferObject.getSize()) + "\n";
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
