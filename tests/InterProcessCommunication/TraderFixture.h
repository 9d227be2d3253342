// TraderFixture: a trader over a scripted forwarder, and every operation of the trader as a case. The outputs
// of a case show whether the operation changed them.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "InterProcessCommunication/POSTransferObjTrader.h"
#include "tests/InterProcessCommunication/PreparedForwarder.h"
#include "tests/InterProcessCommunication/TransportTexts.h"
#include "tests/support/library/Bytes.h"

namespace dovrel::test {

/// The outputs of all operations, filled with values that no operation returns.
struct Outputs {
    static constexpr uint32_t kUntouchedNumber = 0xDEADBEEF;

    POSRegistration registration{kUntouchedNumber, true};
    CPPObjectID objectId{arrayOf("untouched")};
    POSServerMessage message{kUntouchedNumber, "untouched"};
    uint8_t untouchedByte = 0;
    uint8_t* block = &untouchedByte;
    uint32_t blockLength = kUntouchedNumber;

    Outputs() = default;
    Outputs(const Outputs&) = delete;
    Outputs& operator=(const Outputs&) = delete;
    ~Outputs() {
        if (block != &untouchedByte) delete[] block;
    }

    void expectUntouched() const {
        EXPECT_EQ(registration.applicationId, kUntouchedNumber);
        EXPECT_TRUE(registration.checksClasses);
        EXPECT_EQ(textOf(objectId), "untouched");
        EXPECT_EQ(message.flags, kUntouchedNumber);
        EXPECT_EQ(message.text, "untouched");
        EXPECT_EQ(block, &untouchedByte);
        EXPECT_EQ(blockLength, kUntouchedNumber);
    }

    std::string blockText() const { return std::string(block, block + blockLength); }
};

/// One operation of the trader.
struct Operation {
    const char* name;
    /// The parts after the header that a normal reply needs; for a registration those of the last reply.
    std::string replyParts;
    std::function<bool(POSTransferObjTrader&, Outputs&)> run;
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
    Outputs outputs;
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
         [](POSTransferObjTrader& trader, Outputs& outputs) {
             return trader.registerApplication("App", {kClass}, CPPByteArray(), outputs.registration);
         },
         true},
        {"unregister application", "",
         [](POSTransferObjTrader& trader, Outputs&) { return trader.unregisterApplication(5); }},
        {"instantiate object", part(105, kSixteen) + part(120, ""),
         [](POSTransferObjTrader& trader, Outputs& outputs) {
             return trader.instantiateObject(5, kClass, kNoExecuter, outputs.objectId, outputs.message);
         }},
        {"delete object", "",
         [](POSTransferObjTrader& trader, Outputs&) { return trader.deleteObject(5, kObject); }},
        {"call method", part(111, "72") + part(120, ""),
         [](POSTransferObjTrader& trader, Outputs& outputs) {
             return trader.callMethod(5, nullptr, kObject, "m", kBytes, 2, &outputs.block,
                                      &outputs.blockLength, outputs.message);
         }},
        {"execute command", part(111, "72"),
         [](POSTransferObjTrader& trader, Outputs& outputs) {
             return trader.executeCommand(5, kBytes, 1, kBytes, 2, &outputs.block, &outputs.blockLength);
         }},
        {"get information", part(109, "72"),
         [](POSTransferObjTrader& trader, Outputs& outputs) {
             return trader.getInformation(5, kBytes, 2, &outputs.block, &outputs.blockLength);
         }},
    };
    return kOperations;
}

}  // namespace dovrel::test
