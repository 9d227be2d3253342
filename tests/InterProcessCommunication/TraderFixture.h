// TraderFixture: a trader over a scripted forwarder, and every operation of the trader as a case.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "InterProcessCommunication/POSCommands.h"
#include "InterProcessCommunication/POSTransferObjTrader.h"
#include "tests/InterProcessCommunication/PreparedForwarder.h"
#include "tests/InterProcessCommunication/TransportTexts.h"
#include "tests/support/library/Bytes.h"

namespace dovrel::test {

/// The result of any operation. Values that the operation does not return are empty.
struct Returned {
    Returned(POSOutcome ended) : outcome(ended) {}
    Returned(const POSResult<POSRegistration>& result)
        : outcome(result.outcome), registration(result.value) {}
    Returned(const POSResult<POSInstance>& result)
        : outcome(result.outcome), objectId(textOf(result.value.object)), message(result.value.message) {}
    Returned(POSResult<POSMethodReply> result)
        : outcome(result.outcome), message(result.value.message), block(std::move(result.value.result)) {}
    Returned(POSResult<ByteBlock> result) : outcome(result.outcome), block(std::move(result.value)) {}

    bool isDone() const { return outcome == POSOutcome::kDone; }
    std::string blockText() const { return test::blockText(block); }

    /// Expects that the operation ended without an exception and without a value.
    void expectUnlistedError() const {
        EXPECT_EQ(outcome, POSOutcome::kUnlistedError);
        EXPECT_EQ(registration.applicationId, 0u);
        EXPECT_FALSE(registration.checksClasses);
        EXPECT_EQ(objectId, "");
        EXPECT_FALSE(message.isPresent());
        EXPECT_EQ(message.text, "");
        EXPECT_EQ(block.data, nullptr);
        EXPECT_EQ(block.length, 0u);
    }

    POSOutcome outcome;
    POSRegistration registration;
    std::string objectId;
    POSServerMessage message;
    ByteBlock block;
};

/// One operation of the trader.
struct Operation {
    const char* name;
    /// The parts after the header that a normal reply needs; for a registration those of the last reply.
    std::string replyParts;
    std::function<Returned(POSTransferObjTrader&)> run;
    /// True if the handshake and the version check come before the operation.
    bool registers = false;
};

class TraderFixture : public testing::Test {
  protected:
    TraderFixture() { trader.setForwarder(&forwarder); }

    /// Fails the test unless every reply that the trader received was deleted.
    ~TraderFixture() override { EXPECT_EQ(forwarder.livingAnswers(), 0); }

    static const std::vector<Operation>& operations();

    /// Returns the operation with this name.
    static const Operation& operationNamed(const std::string& name) {
        for (const Operation& one : operations())
            if (one.name == name) return one;
        throw std::out_of_range("no operation \"" + name + "\"");
    }

    /// Prepares the replies that are needed before the operation's own exchange.
    void prepare(const Operation& operation) {
        if (operation.registers) forwarder.answerParts(kNormalAnswer + uint32Part(118, 7));
    }

    /// Returns the hexadecimal wire form of the last request of this command; "" if there is none.
    std::string request(const POSCommand& command) const {
        const auto last = forwarder.lastRequest(command);
        return last == nullptr ? "" : hexOf(last->bytes());
    }

    const CPPClassID classId{arrayOf("ABCDEFGHIJKLMNOP")};
    const CPPObjectID objectId{arrayOf("abcdefghijklmnop")};
    const TransportTexts texts;
    PreparedForwarder forwarder;
    POSTransferObjTrader trader;
};

inline const std::vector<Operation>& TraderFixture::operations() {
    static const CPPClassID kClass{arrayOf("ABCDEFGHIJKLMNOP")};
    static const CPPObjectID kObject{arrayOf("abcdefghijklmnop")};
    static const uint8_t kBytes[] = {'x', 'y'};
    static const std::string kSixteen = hexOf(arrayOf("0123456789abcdef"));
    static const std::vector<Operation> kOperations = {
        {"register application", uint32Part(103, 5) + uint32Part(115, 0),
         [](POSTransferObjTrader& trader) {
             return Returned(trader.registerApplication("App", {kClass}, CPPByteArray()));
         },
         true},
        {"unregister application", "",
         [](POSTransferObjTrader& trader) { return Returned(trader.unregisterApplication(5)); }},
        {"instantiate object", part(105, kSixteen) + part(120, ""),
         [](POSTransferObjTrader& trader) {
             return Returned(trader.instantiateObject(5, kClass, kNoExecuter));
         }},
        {"delete object", "",
         [](POSTransferObjTrader& trader) { return Returned(trader.deleteObject(5, kObject)); }},
        {"call method", part(111, "72") + part(120, ""),
         [](POSTransferObjTrader& trader) {
             return Returned(trader.callMethod(5, {kObject, std::nullopt, "m", {kBytes, 2}}));
         }},
        {"execute command", part(111, "72"),
         [](POSTransferObjTrader& trader) {
             return Returned(trader.executeCommand(5, {{kBytes, 1}, {kBytes, 2}}));
         }},
        {"get information", part(109, "72"),
         [](POSTransferObjTrader& trader) {
             return Returned(trader.getInformation(5, {kBytes, 2}));
         }},
    };
    return kOperations;
}

}  // namespace dovrel::test
