#include "server/RequestKey.h"

#include <memory>

#include "InterProcessCommunication/POSCommands.h"
#include "InterProcessCommunication/TransferObjText.h"
#include "client/exceptions/CPPException.h"
#include "platform/random/MD5.h"
#include "platform/text/TextConversions.h"
#include "serialization/StructuredByteArrayReader.h"

namespace merrowd {

using dovrel::CPPByteArray;
using dovrel::CPPException;
namespace posField = dovrel::posField;

namespace {

RequestKey readKey(const dovrel::POSCommand& command, const CPPByteArray& request) {
    dovrel::StructuredByteArrayReader reader;
    reader.initialize(&request);
    RequestKey key;
    key.command = command.code;
    dovrel::MD5 md5;
    for (const dovrel::POSField& field : command.request) {
        if (field.number == posField::kClientProcess.number) continue;
        if (field.number == posField::kSession.number) {
            key.session = reader.viewNumber(field);
            continue;
        }
        const dovrel::ByteView data = reader.viewPart(field);
        if (field.number == posField::kObject.number) {
            key.object.assign(data.data, data.data + data.length);
            continue;
        }
        // With its number and its length, no field can look like another one.
        const std::string head = std::to_string(field.number) + " " + std::to_string(data.length) + " ";
        md5.update(head.data(), static_cast<uint32_t>(head.size()));
        md5.update(data.data, data.length);
    }
    const dovrel::MD5::Digest digest = md5.digest();
    key.digest.assign(digest.begin(), digest.end());
    return key;
}

}  // namespace

std::optional<RequestKey> RequestKey::fromRequest(const CPPByteArray& request) {
    const dovrel::POSCommand* command = dovrel::findPOSCommand(dovrel::readCommandCode(request));
    if (command == nullptr) return std::nullopt;
    try {
        return readKey(*command, request);
    } catch (CPPException* caught) {
        const std::unique_ptr<CPPException> failure(caught);
        return std::nullopt;
    }
}

}  // namespace merrowd
