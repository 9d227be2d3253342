// Makes each allocation fail once, one after the other. The operation then either throws and
// leaves its outputs untouched, or succeeds anyway. The sanitizers check that nothing leaks
// and that nothing is freed twice.
#include <algorithm>
#include <new>

#include "InterProcessCommunication/Client_to_POS_Communicator.h"
#include "InterProcessCommunication/MacOSXTransferObjForwarder.h"
#include "InterProcessCommunication/POSFieldForms.h"
#include "InterProcessCommunication/POSTransferObjTrader.h"
#include "InterProcessCommunication/TransferPack.h"
#include "client/exceptions/CPPException.h"
#include "tests/InterProcessCommunication/ChannelFixture.h"
#include "tests/support/HeapWatch.h"
#include "tests/support/library/Bytes.h"

namespace dovrel {
namespace {

using test::arrayOf;
using test::PlatformDouble;

constexpr uint32_t kUntouched = 0xDEADBEEF;

class OutOfMemoryTest : public test::ChannelFixture {
  protected:
    OutOfMemoryTest() {
        install();
        platform.processes = {"Merrowd"};
        trader.setForwarder(&forwarder);
    }

    // Runs `operation` with its first allocation failing, then its second, and so on until none fails. The
    // operation returns true if it succeeded. After each run that throws, `expectUntouched` is called.
    template <class Operation, class Check>
    void failEachRequest(Operation operation, Check expectUntouched) {
        Outcome outcome = Outcome::done;
        test::refuseEachRequest([&] { outcome = run(operation); },
                                [&](bool refused) {
                                    if (outcome == Outcome::thrown) expectUntouched();
                                    EXPECT_TRUE(refused || outcome == Outcome::done)
                                        << "failed without a reason";
                                    EXPECT_NE(outcome, Outcome::wrong);
                                });
    }

    MacOSXTransferObjForwarder forwarder;
    POSTransferObjTrader trader;
    const CPPObjectID objectId{arrayOf("abcdefghijklmnop")};
    const CPPClassID classId{arrayOf("ABCDEFGHIJKLMNOP")};

    std::string normalAnswer() {
        POSTransferObj answer(1, 11, 0);
        answer.writeUInt32(103, 5);
        answer.writeByteArray(105, objectId);
        answer.writeString(109, "info");
        answer.writeString(111, "result");
        answer.writeUInt32(115, 1);
        answer.writeUInt32(118, 7);
        answer.writeString(120, std::string("\1\0\0\0message", 11));
        return test::textOf(answer.bytes());
    }

  private:
    enum class Outcome { done, wrong, thrown };

    template <class Operation>
    static Outcome run(Operation operation) {
        try {
            return operation() ? Outcome::done : Outcome::wrong;
        } catch (CPPException* caught) {
            delete caught;
        } catch (const std::bad_alloc&) {
        }
        return Outcome::thrown;
    }
};

TEST_F(OutOfMemoryTest, RegisterApplication_EndsInAnExceptionOrRegisters) {
    answerAlways(normalAnswer());
    POSRegistration registration;
    const std::vector<CPPClassID> classes{classId};
    trader.registerApplication("App", classes, objectId, registration);
    const auto sent = platform.sent.back().directParameter;
    failEachRequest(
        [&] {
            registration.applicationId = kUntouched;
            return trader.registerApplication("App", classes, objectId, registration) &&
                   registration.applicationId == 5 && registration.checksClasses &&
                   platform.sent.back().directParameter == sent;
        },
        [&] { EXPECT_EQ(registration.applicationId, kUntouched); });
}

TEST_F(OutOfMemoryTest, InstantiateObject_EndsInAnExceptionOrHandsTheObjectOut) {
    answerAlways(normalAnswer());
    failEachRequest(
        [&] {
            CPPObjectID created;
            POSServerMessage message;
            try {
                return trader.instantiateObject(5, classId, kNoExecuter, created, message) &&
                       created.compare(objectId) == 0 && message.text == "message";
            } catch (...) {
                // Checked here, because the outputs are local to this function.
                EXPECT_EQ(created.getSize(), 0u);
                EXPECT_EQ(message.flags, 0u);
                throw;
            }
        },
        [] {});
}

TEST_F(OutOfMemoryTest, CallMethod_EndsInAnExceptionOrHandsTheResultOut) {
    answerAlways(normalAnswer());
    uint8_t* result = nullptr;
    uint32_t length = kUntouched;
    failEachRequest(
        [&] {
            result = nullptr;
            length = kUntouched;
            POSServerMessage message;
            const bool done =
                trader.callMethod(5, nullptr, objectId, "name", nullptr, 0, &result, &length, message) &&
                std::string(result, result + length) == "result" && message.text == "message";
            delete[] result;
            return done;
        },
        [&] {
            EXPECT_EQ(result, nullptr);
            EXPECT_EQ(length, kUntouched);
        });
}

TEST_F(OutOfMemoryTest, ExecuteCommandAndGetInformation_EndInAnExceptionOrHandTheBlockOut) {
    answerAlways(normalAnswer());
    const uint8_t bytes[] = {1, 2, 3};
    uint8_t* block = nullptr;
    uint32_t length = kUntouched;
    const auto expectUntouched = [&] {
        EXPECT_EQ(block, nullptr);
        EXPECT_EQ(length, kUntouched);
    };
    const auto run = [&](auto operation, const char* expected) {
        failEachRequest(
            [&] {
                block = nullptr;
                length = kUntouched;
                const bool done = operation() && std::string(block, block + length) == expected;
                delete[] block;
                return done;
            },
            expectUntouched);
    };
    run([&] { return trader.executeCommand(5, bytes, 1, bytes, 3, &block, &length); }, "result");
    run([&] { return trader.getInformation(5, bytes, 3, &block, &length); }, "info");
}

TEST_F(OutOfMemoryTest, ExecuteCommand_SendsTheWholeCommandOrNothing) {
    answerAlways(normalAnswer());
    const uint8_t command[] = {'c', 'o', 'm', 'm', 'a', 'n', 'd'};
    const uint8_t argument[] = {'!'};
    for (const uint32_t argumentLength : {1u, 0u}) {
        const auto execute = [&] {
            uint8_t* block = nullptr;
            uint32_t length = 0;
            const bool done =
                trader.executeCommand(5, command, sizeof command, argument, argumentLength, &block, &length);
            delete[] block;
            return done;
        };
        ASSERT_TRUE(execute());
        const auto sent = platform.sent.back().directParameter;
        failEachRequest([&] { return execute() && platform.sent.back().directParameter == sent; }, [] {});
    }
}

TEST_F(OutOfMemoryTest, TransferPack_HoldsAllThatItReportsOrIsNotMade) {
    for (const size_t recordLength : {16u, 608u, 700u}) {
        std::string bytes(recordLength, 'x');
        bytes[14] = 100;  // bytes of additional data
        bytes[15] = 0;
        const CPPByteArray record = arrayOf(bytes);
        failEachRequest(
            [&] {
                const TransferPack pack(record);
                uint16_t size = 0;
                const uint8_t* const data = pack.getAdditionalData(size);
                std::string expected = bytes;
                expected.resize(708);
                return size == 100 && pack.getStatus() == 0x7878 &&
                       std::equal(data, data + size, expected.begin() + 608, [](uint8_t left, char right) {
                           return left == static_cast<uint8_t>(right);
                       });
            },
            [] {});
    }
}

TEST_F(OutOfMemoryTest, CopiesOfTransferObjects_AreCompleteOrEndInAnException) {
    POSTransferObj object(1, 10, 14);
    const CPPByteArray wire = object.bytes();
    // Arrays of the same size, so that only the content shows whether an array was replaced.
    const CPPByteArray other = test::plainArray(wire.getSize());
    failEachRequest(
        [&] {
            CPPByteArray copy = other;
            if (copy.getSize() != other.getSize()) throw std::bad_alloc();
            object.copyBytesTo(copy);
            return copy.compare(wire) == 0;
        },
        [] {});
    failEachRequest(
        [&] {
            POSTransferObj rebuilt(1, 20, 13);
            rebuilt.copyBytesFrom(wire);
            return rebuilt.bytes().compare(wire) == 0;
        },
        [] {});
}

TEST_F(OutOfMemoryTest, ReadIdentifier_ReplacesAnotherIdentifierOrEndsInAnException) {
    failEachRequest(
        [&] {
            POSTransferObj object(1, 11, 0);
            object.writeByteArray(105, objectId);
            CPPObjectID identifier(classId);
            if (identifier.getSize() != kPOSIdentifierSize) throw std::bad_alloc();
            readIdentifier(object, 105, identifier);
            return identifier.compare(objectId) == 0;
        },
        [] {});
}

TEST_F(OutOfMemoryTest, ErrorAnswer_IsReleasedWhateverFails) {
    POSTransferObj answer(1, 20, 0);
    answer.writeString(150, "no such object");
    answer.writeUInt32(151, 25);
    answerAlways(test::textOf(answer.bytes()));
    bool thrown = false;
    failEachRequest(
        [&] {
            try {
                trader.deleteObject(5, objectId);
            } catch (CPPException* caught) {
                const std::unique_ptr<CPPException> failure(caught);
                thrown = thrown || failure->getTypeCode() == 25;
                return true;
            }
            return false;
        },
        [] {});
    EXPECT_TRUE(thrown);
}

TEST_F(OutOfMemoryTest, LostServer_IsReconnectedToOrTheRequestEndsInAnException) {
    bool gone = true;
    platform.server = [&gone, this](const test::SentEvent& event, AppleEvent* reply) {
        if (event.eventID == 'data' && gone) {
            gone = false;
            return OSErr{procNotFound};
        }
        return PlatformDouble::answerWith(reply, normalAnswer());
    };
    testing::internal::CaptureStdout();
    failEachRequest(
        [&] {
            gone = true;
            return trader.unregisterApplication(5);
        },
        [] {});
    testing::internal::GetCapturedStdout();
}

}  // namespace
}  // namespace dovrel
