#include "tests/client/ScriptedForwarder.h"

#include <algorithm>
#include <new>

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
    answer.writeString(120, std::string(word, sizeof word) + text);
}

}  // namespace

Answer interfaceVersion(uint32_t version) {
    return filled(kNormalAnswer, [=](POSTransferObj& answer) { answer.writeUInt32(118, version); });
}

Answer registration(uint32_t applicationId, uint32_t flags) {
    return filled(kNormalAnswer, [=](POSTransferObj& answer) {
        answer.writeUInt32(103, applicationId);
        answer.writeUInt32(115, flags);
    });
}

Answer nothing() {
    return filled(kNormalAnswer, [](POSTransferObj&) {});
}

Answer object(const std::string& identifier, uint32_t messageFlags, const std::string& text) {
    return filled(kNormalAnswer, [=](POSTransferObj& answer) {
        answer.writeString(105, padded(identifier));
        writeMessage(answer, messageFlags, text);
    });
}

Answer result(const std::string& bytes, uint32_t messageFlags, const std::string& text) {
    return filled(kNormalAnswer, [=](POSTransferObj& answer) {
        answer.writeString(111, bytes);
        writeMessage(answer, messageFlags, text);
    });
}

Answer information(const std::string& bytes) {
    return filled(kNormalAnswer, [=](POSTransferObj& answer) { answer.writeString(109, bytes); });
}

Answer error(uint32_t code, const std::string& text) {
    return filled(kExceptionAnswer, [=](POSTransferObj& answer) {
        answer.writeString(150, text);
        answer.writeUInt32(151, code);
    });
}

ScriptedForwarder::ScriptedForwarder() {
    // Room for the destructor's entry, because an allocation could fail there.
    calls_->reserve(16);
    answer(10, [this](POSTransferObj& request) { return registration(nextApplicationId_++)(request); });
    answer(11, nothing());
    answer(12, object("object"));
    answer(13, nothing());
    answer(14, result("result"));
    answer(15, result("result"));
    answer(16, information("information"));
    answer(17, interfaceVersion(7));
}

ScriptedForwarder::~ScriptedForwarder() {
    calls_->push_back("destroyed");
}

void ScriptedForwarder::answerNext(uint32_t command, std::vector<Answer> answers) {
    next_[command] = std::move(answers);
}

POSTransferObj* ScriptedForwarder::ForwardTransferObj(POSTransferObj& request) {
    if (onRequest) onRequest();
    POSTransferObj received;
    received.copyBytesFrom(request.bytes());
    const uint32_t command = received.getCommand();
    requests_.push_back({command, received.bytes()});
    if (requests_.back().bytes.getSize() != received.bytes().getSize()) throw std::bad_alloc();
    calls_->push_back(std::to_string(command));

    std::vector<Answer>& next = next_[command];
    if (next.empty()) return always_.at(command)(received).release();
    const Answer answer = next.front();
    next.erase(next.begin());
    return answer(received).release();
}

void ScriptedForwarder::ConnectToPOS(uint32_t hint) {
    calls_->push_back("connect " + std::to_string(hint));
    if (onConnect) onConnect();
}

void ScriptedForwarder::CheckConnection() {
    calls_->push_back("check");
    if (onCheck) onCheck();
}

CPPByteArray ScriptedForwarder::GetClientProcessID() {
    return CPPByteArray();
}

size_t ScriptedForwarder::countOf(const std::string& call) const {
    return static_cast<size_t>(std::count(calls_->begin(), calls_->end(), call));
}

std::vector<std::unique_ptr<POSTransferObj>> ScriptedForwarder::requests(uint32_t command) const {
    std::vector<std::unique_ptr<POSTransferObj>> found;
    for (const Request& request : requests_) {
        if (request.command != command) continue;
        found.push_back(std::make_unique<POSTransferObj>());
        found.back()->copyBytesFrom(request.bytes);
    }
    return found;
}

std::unique_ptr<POSTransferObj> ScriptedForwarder::lastRequest(uint32_t command) const {
    std::vector<std::unique_ptr<POSTransferObj>> all = requests(command);
    return all.empty() ? nullptr : std::move(all.back());
}

}  // namespace dovrel::test
