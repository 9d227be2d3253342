// Fuzz target for the server's reply to the trader. For every reply, an operation either succeeds and sets
// its outputs, or fails and leaves them unchanged. It throws only exceptions that the client reports.
//
// The first byte of the input selects the operation, the rest is the reply:
//
// - 0 to 6: the operations in the order of their commands; a registration first gets a correct
//   reply to its version check,
// - 7: a registration whose version check gets the reply.

#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "FuzzTarget.h"
#include "InterProcessCommunication/POSTransferObj.h"
#include "InterProcessCommunication/POSTransferObjForwarder.h"
#include "InterProcessCommunication/POSTransferObjTrader.h"
#include "client/exceptions/CPPException.h"

namespace {

using namespace dovrel;

constexpr uint32_t kUntouched = 0xDEADBEEF;

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

struct Outputs {
    POSRegistration registration{kUntouched, false};
    CPPObjectID objectId;
    POSServerMessage message{kUntouched, "untouched"};
    uint8_t* block = nullptr;
    uint32_t length = kUntouched;

    Outputs() = default;
    Outputs(const Outputs&) = delete;
    Outputs& operator=(const Outputs&) = delete;
    ~Outputs() { delete[] block; }

    bool isUntouched() const {
        return registration.applicationId == kUntouched && !registration.checksClasses &&
               objectId.getSize() == 0 && message.flags == kUntouched && message.text == "untouched" &&
               block == nullptr && length == kUntouched;
    }
};

bool run(uint8_t operation, POSTransferObjTrader& trader, Outputs& outputs) {
    const CPPClassID classId(sixteenBytes('C'));
    const CPPObjectID objectId(sixteenBytes('O'));
    const uint8_t bytes[] = {1, 2};
    switch (operation) {
        case 1:
            return trader.unregisterApplication(5);
        case 2:
            return trader.instantiateObject(5, classId, kNoExecuter, outputs.objectId, outputs.message);
        case 3:
            return trader.deleteObject(5, objectId);
        case 4:
            return trader.callMethod(5, nullptr, objectId, "m", bytes, 2, &outputs.block, &outputs.length,
                                     outputs.message);
        case 5:
            return trader.executeCommand(5, bytes, 2, bytes, 2, &outputs.block, &outputs.length);
        case 6:
            return trader.getInformation(5, bytes, 2, &outputs.block, &outputs.length);
        default:
            return trader.registerApplication("App", {classId}, CPPByteArray(), outputs.registration);
    }
}

// The outputs are complete and can be used.
void checkOutputs(uint8_t operation, const Outputs& outputs) {
    const bool givesBlock = operation >= 4 && operation <= 6;
    FUZZ_CHECK(!givesBlock || (outputs.block == nullptr) == (outputs.length == 0));
    FUZZ_CHECK(operation != 2 || outputs.objectId.getSize() == kPOSIdentifierSize);
    const bool givesMessage = operation == 2 || operation == 4;
    FUZZ_CHECK(!givesMessage || outputs.message.text != "untouched" || outputs.message.flags != kUntouched);
    if (givesBlock && outputs.length > 0) {
        const std::vector<uint8_t> copy(outputs.block, outputs.block + outputs.length);
        FUZZ_CHECK(copy.size() == outputs.length);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    const uint8_t operation = data[0] % 8;
    FixedAnswer forwarder(data + 1, size - 1, operation == 0);
    POSTransferObjTrader trader;
    trader.setForwarder(&forwarder);
    Outputs outputs;
    try {
        if (run(operation, trader, outputs)) {
            checkOutputs(operation, outputs);
        } else {
            FUZZ_CHECK(outputs.isUntouched());
        }
    } catch (CPPException* caught) {
        const std::unique_ptr<CPPException> failure(caught);
        FUZZ_CHECK(failure->getTypeCode() != 36);
        FUZZ_CHECK(outputs.isUntouched());
    }
    return 0;
}
