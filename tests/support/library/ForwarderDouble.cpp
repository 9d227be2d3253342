#include "tests/support/library/ForwarderDouble.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <new>

#include "InterProcessCommunication/POSCommands.h"

namespace dovrel::test {

namespace {

std::string toCommandName(uint32_t command) {
    const POSCommand* const known = findPOSCommand(command);
    return known == nullptr ? std::to_string(command) : known->name;
}

Answer takeFirst(std::deque<Answer>& answers) {
    const Answer first = answers.front();
    answers.pop_front();
    return first;
}

}  // namespace

ForwarderDouble::ForwarderDouble() {
    // Room for the destructor's entry, because an allocation could fail there.
    calls_->reserve(16);
}

ForwarderDouble::~ForwarderDouble() {
    calls_->push_back("destroyed");
}

void ForwarderDouble::answerNext(uint32_t command, std::vector<Answer> answers) {
    next_[command].assign(answers.begin(), answers.end());
}

Answer ForwarderDouble::nextAnswer(uint32_t command) {
    if (!nextOfAny_.empty()) return takeFirst(nextOfAny_);
    const auto next = next_.find(command);
    if (next != next_.end() && !next->second.empty()) return takeFirst(next->second);
    const auto always = always_.find(command);
    return always == always_.end() ? otherwise_ : always->second;
}

POSTransferObj* ForwarderDouble::ForwardTransferObj(POSTransferObj& request) {
    if (onRequest) onRequest();
    POSTransferObj received;
    received.copyBytesFrom(request.bytes());
    const uint32_t command = received.getCommand();
    requests_.push_back({command, received.bytes()});
    if (requests_.back().bytes.getSize() != received.bytes().getSize()) throw std::bad_alloc();
    calls_->push_back(toCommandName(command));

    const Answer answer = nextAnswer(command);
    if (!answer) {
        ADD_FAILURE() << "no reply is prepared for \"" << toCommandName(command) << "\"";
        return new POSTransferObj;
    }
    std::unique_ptr<POSTransferObj> reply = answer(received);
    if (onAnswer) onAnswer(*reply);
    return reply.release();
}

void ForwarderDouble::ConnectToPOS(uint32_t hint) {
    calls_->push_back("connect " + std::to_string(hint));
    if (onConnect) onConnect();
}

void ForwarderDouble::CheckConnection() {
    calls_->push_back("check");
    if (onCheck) onCheck();
}

CPPByteArray ForwarderDouble::GetClientProcessID() {
    calls_->push_back("identify");
    return clientProcess;
}

size_t ForwarderDouble::countOccurrences(const std::string& call) const {
    return static_cast<size_t>(std::count(calls_->begin(), calls_->end(), call));
}

std::vector<std::unique_ptr<POSTransferObj>> ForwarderDouble::requests(uint32_t command) const {
    std::vector<std::unique_ptr<POSTransferObj>> found;
    for (const Request& request : requests_) {
        if (request.command != command) continue;
        found.push_back(std::make_unique<POSTransferObj>());
        found.back()->copyBytesFrom(request.bytes);
    }
    return found;
}

std::unique_ptr<POSTransferObj> ForwarderDouble::lastRequest(uint32_t command) const {
    std::vector<std::unique_ptr<POSTransferObj>> all = requests(command);
    return all.empty() ? nullptr : std::move(all.back());
}

}  // namespace dovrel::test
