#include "tests/support/library/AcceptingForwarder.h"

#include "InterProcessCommunication/POSCommands.h"

namespace dovrel::test {

namespace {

constexpr uint32_t kNormalAnswer = 11;
constexpr uint32_t kExceptionAnswer = 20;

using Fill = std::function<void(POSTransferObj& answer)>;

Answer filled(uint32_t messageKind, Fill fill) {
    return [messageKind, fill](POSTransferObj& request) {
        auto answer = std::make_unique<POSTransferObj>(1, messageKind, request.getCommand());
        fill(*answer);
        return answer;
    };
}

std::string padded(const std::string& identifier) {
    return identifier + std::string(16 - identifier.size(), '\0');
}

void writeMessage(POSTransferObj& answer, uint32_t flags, const std::string& text) {
    const char word[] = {static_cast<char>(flags), static_cast<char>(flags >> 8),
                         static_cast<char>(flags >> 16), static_cast<char>(flags >> 24)};
    answer.writeString(posField::kServerMessage, std::string(word, sizeof word) + text);
}

}  // namespace

Answer interfaceVersion(uint32_t version) {
    return filled(kNormalAnswer,
                  [=](POSTransferObj& answer) { answer.writeUInt32(posField::kInterfaceVersion, version); });
}

Answer registration(uint32_t applicationId, uint32_t flags) {
    return filled(kNormalAnswer, [=](POSTransferObj& answer) {
        answer.writeUInt32(posField::kSession, applicationId);
        answer.writeUInt32(posField::kRegistrationFlags, flags);
    });
}

Answer nothing() {
    return filled(kNormalAnswer, [](POSTransferObj&) {});
}

Answer object(const std::string& identifier, uint32_t messageFlags, const std::string& text) {
    return filled(kNormalAnswer, [=](POSTransferObj& answer) {
        answer.writeString(posField::kObject, padded(identifier));
        writeMessage(answer, messageFlags, text);
    });
}

Answer result(const std::string& bytes, uint32_t messageFlags, const std::string& text) {
    return filled(kNormalAnswer, [=](POSTransferObj& answer) {
        answer.writeString(posField::kResult, bytes);
        writeMessage(answer, messageFlags, text);
    });
}

Answer information(const std::string& bytes) {
    return filled(kNormalAnswer,
                  [=](POSTransferObj& answer) { answer.writeString(posField::kInformation, bytes); });
}

Answer error(uint32_t code, const std::string& text) {
    return filled(kExceptionAnswer, [=](POSTransferObj& answer) {
        answer.writeString(posField::kExceptionText, text);
        answer.writeUInt32(posField::kExceptionCode, code);
    });
}

AcceptingForwarder::AcceptingForwarder() {
    answer(posCommand::kRegisterApplication,
           [this](POSTransferObj& request) { return registration(nextApplicationId_++)(request); });
    answer(posCommand::kUnregisterApplication, nothing());
    answer(posCommand::kInstantiateObject, object("object"));
    answer(posCommand::kDeleteObject, nothing());
    answer(posCommand::kCallMethod, result("result"));
    answer(posCommand::kExecuteCommand, result("result"));
    answer(posCommand::kGetInformation, information("information"));
    answer(posCommand::kQueryInterfaceVersion, interfaceVersion(7));
}

}  // namespace dovrel::test
