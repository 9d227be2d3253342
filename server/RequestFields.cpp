#include "server/RequestFields.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <utility>

#include "client/exceptions/CPPException.h"

namespace merrowd {

using dovrel::CPPException;
using dovrel::POSFieldForm;
namespace posField = dovrel::posField;

namespace {

constexpr uint32_t kNumberSize = 4;

[[noreturn]] void refuseForm(const std::string& text) {
    throw Refusal{refusalCode::kPOSParameterFormat, text};
}

[[noreturn]] void refuseInterface(const std::string& text) {
    throw Refusal{dovrel::kErrorCodeNoValidInterface, text};
}

std::string described(const POSField& field) {
    return "field " + std::to_string(field.number) + " (" + field.name + ")";
}

void requireSize(const POSField& field, uint32_t size, uint32_t expected) {
    if (size == expected) return;
    refuseForm(described(field) + " has " + std::to_string(size) + " bytes, not " + std::to_string(expected));
}

}  // namespace

RequestFields::RequestFields(CPPByteArray& request) : request_(request) {
    parse(request);
    checkHeader();
    const uint32_t code = number(posField::kCommand);
    command_ = dovrel::findPOSCommand(code);
    if (command_ == nullptr) refuseInterface("there is no command " + std::to_string(code));
    for (const POSField& field : command_->request)
        checkField(field);
}

void RequestFields::parse(const CPPByteArray& request) {
    try {
        reader_.initialize(&request);
    } catch (CPPException* caught) {
        std::unique_ptr<CPPException> failure(caught);
        refuseForm("the request is no structured block");
    }
    const uint32_t version = reader_.getTypeNumber();
    if (version == dovrel::kTransferObjFormatVersion) return;
    refuseInterface("the request has format version " + std::to_string(version) + ", not 9");
}

void RequestFields::checkHeader() const {
    for (const POSField& field : {posField::kTransferKind, posField::kMessageKind, posField::kCommand}) {
        checkField(field);
    }
    if (number(posField::kTransferKind) != dovrel::kTransferKindStandard) {
        refuseForm("the transfer kind is " + std::to_string(number(posField::kTransferKind)) + ", not 1");
    }
    if (number(posField::kMessageKind) != dovrel::kMessageKindRequest) {
        refuseForm("the message kind is " + std::to_string(number(posField::kMessageKind)) + ", not 10");
    }
}

void RequestFields::checkField(const POSField& field) const {
    dovrel::ByteView view;
    if (!reader_.findPart(field, view)) refuseForm(described(field) + " is missing");
    switch (field.form) {
        case POSFieldForm::kUInt32:
            return requireSize(field, view.length, kNumberSize);
        case POSFieldForm::kIdentifier:
            return requireSize(field, view.length, dovrel::kPOSIdentifierSize);
        case POSFieldForm::kOptionalIdentifier:
            if (view.length != 0) requireSize(field, view.length, dovrel::kPOSIdentifierSize);
            return;
        case POSFieldForm::kName:
            if (view.length == 0 || std::memchr(view.data, 0, view.length) != view.data + view.length - 1) {
                refuseForm(described(field) + " does not end with its one zero byte");
            }
            return;
        case POSFieldForm::kText:
        case POSFieldForm::kData:
            return;
    }
}

Identifier RequestFields::identifier(const POSField& field) const {
    Identifier identifier{};
    const dovrel::ByteView view = reader_.viewPart(field);
    std::copy_n(view.data, std::min<size_t>(view.length, identifier.size()), identifier.begin());
    return identifier;
}

std::string RequestFields::name(const POSField& field) const {
    const dovrel::ByteView view = reader_.viewPart(field);
    return std::string(reinterpret_cast<const char*>(view.data), view.length - 1);
}

CPPByteArray RequestFields::data(const POSField& field) const {
    const dovrel::ByteView view = reader_.viewPart(field);
    CPPByteArray part;
    part.setOrThrow(view.data, view.length);
    return part;
}

CPPByteArray RequestFields::takeData(const POSField& field) {
    const dovrel::ByteView view = reader_.viewPart(field);
    // A field that is much smaller than the request would keep too much memory.
    if (view.length < request_.getSize() / 2) return data(field);
    request_.keepPart(static_cast<uint32_t>(view.data - request_.data()), view.length);
    return std::move(request_);
}

}  // namespace merrowd
