// Fuzz target for the server's reply to the trader. For every reply, an operation either succeeds and returns
// a value that can be used, or returns an empty value, or throws an exception that the client reports.
//
// The first byte of the input selects the operation, the rest is the reply:
//
// - 0 to 6: the operations in the order of their commands; a registration first gets a correct
//   reply to its version check,
// - 7: a registration whose version check gets the reply.

#include <memory>
#include <optional>
#include <vector>

#include "FuzzTarget.h"
#include "InterProcessCommunication/POSCommands.h"
#include "InterProcessCommunication/POSTransferObj.h"
#include "InterProcessCommunication/POSTransferObjForwarder.h"
#include "InterProcessCommunication/POSTransferObjTrader.h"
#include "client/exceptions/CPPException.h"

namespace {

using namespace dovrel;

CPPByteArray sixteenBytes(char character) {
    CPPByteArray bytes;
    bytes.setFilled(kPOSIdentifierSize, static_cast<uint8_t>(character));
    return bytes;
}

// Returns the given bytes as reply. With `versionFirst`, the first reply contains the
// correct interface version.
class FixedAnswer : public POSTransferObjForwarder {
  public:
    FixedAnswer(const uint8_t* data, size_t size, bool versionFirst) : versionFirst_(versionFirst) {
        answer_.set(data, static_cast<uint32_t>(size));
    }

    POSTransferObj* ForwardTransferObj(POSTransferObj&) override {
        auto reply = std::make_unique<POSTransferObj>();
        if (versionFirst_) {
            reply->setMessageKind(11);
            reply->writeUInt32(posField::kInterfaceVersion, kPOSInterfaceVersion);
            versionFirst_ = false;
        } else {
            reply->copyBytesFrom(answer_);
        }
        return reply.release();
    }
    void ConnectToPOS(uint32_t) override {}
    void CheckConnection() override {}
    CPPByteArray GetClientProcessID() override { return CPPByteArray(); }

  private:
    CPPByteArray answer_;
    bool versionFirst_;
};

bool isEmpty(const POSRegistration& registration) {
    return registration.applicationId == 0 && !registration.checksClasses;
}
bool isEmpty(const ByteBlock& block) {
    return block.data == nullptr && block.length == 0;
}
bool isEmpty(const POSServerMessage& message) {
    return !message.isPresent() && message.text.empty();
}
bool isEmpty(const POSInstance& instance) {
    return instance.object.getSize() == 0 && isEmpty(instance.message);
}
bool isEmpty(const POSMethodReply& reply) {
    return isEmpty(reply.result) && isEmpty(reply.message);
}

bool isUsable(const POSRegistration&) {
    return true;
}
bool isUsable(const ByteBlock& block) {
    const std::vector<uint8_t> copy(block.data.get(), block.data.get() + block.length);
    return copy.size() == block.length && (block.data == nullptr) == (block.length == 0);
}
bool isUsable(const POSInstance& instance) {
    return instance.object.getSize() == kPOSIdentifierSize;
}
bool isUsable(const POSMethodReply& reply) {
    return isUsable(reply.result);
}

template <class Value>
void check(const POSResult<Value>& result) {
    FUZZ_CHECK(result.outcome == POSOutcome::kDone ? isUsable(result.value) : isEmpty(result.value));
}

void run(uint8_t operation, POSTransferObjTrader& trader) {
    const CPPClassID classId(sixteenBytes('C'));
    const CPPObjectID objectId(sixteenBytes('O'));
    const uint8_t bytes[] = {1, 2};
    switch (operation) {
        case 1:
            trader.unregisterApplication(5);
            return;
        case 2:
            return check(trader.instantiateObject(5, classId, kNoExecuter));
        case 3:
            trader.deleteObject(5, objectId);
            return;
        case 4:
            return check(trader.callMethod(5, {objectId, std::nullopt, "m", {bytes, 2}}));
        case 5:
            return check(trader.executeCommand(5, {{bytes, 2}, {bytes, 2}}));
        case 6:
            return check(trader.getInformation(5, {bytes, 2}));
        default:
            return check(trader.registerApplication("App", {classId}, CPPByteArray()));
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    const uint8_t operation = data[0] % 8;
    FixedAnswer forwarder(data + 1, size - 1, operation == 0);
    POSTransferObjTrader trader;
    trader.setForwarder(&forwarder);
    try {
        run(operation, trader);
    } catch (CPPException* caught) {
        const std::unique_ptr<CPPException> failure(caught);
        FUZZ_CHECK(failure->getTypeCode() != 36);
    }
    return 0;
}
