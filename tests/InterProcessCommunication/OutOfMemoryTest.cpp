// Makes each allocation fail once, one after the other. The operation then either throws or succeeds anyway.
// The sanitizers check that nothing leaks and that nothing is freed twice.
#include <algorithm>
#include <memory>
#include <new>

#include "InterProcessCommunication/Client_to_POS_Communicator.h"
#include "InterProcessCommunication/EventDescriptor.h"
#include "InterProcessCommunication/MacOSXTransferObjForwarder.h"
#include "InterProcessCommunication/POSFieldForms.h"
#include "InterProcessCommunication/POSTransferObjTrader.h"
#include "InterProcessCommunication/RecordingFile.h"
#include "InterProcessCommunication/RecordingFormat.h"
#include "InterProcessCommunication/TransferPack.h"
#include "client/exceptions/CPPException.h"
#include "client/exceptions/StructuredDataExceptions.h"
#include "platform/trace/Trace.h"
#include "settings/ConfigFileSystem.h"
#include "tests/InterProcessCommunication/ChannelFixture.h"
#include "tests/support/HeapWatch.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TraceLines.h"
#include "tests/support/library/Bytes.h"
#include "tests/support/library/Failures.h"

namespace dovrel {
namespace {

using test::blockText;
using test::makeArray;
using test::PlatformDouble;

class OutOfMemoryTest : public test::ChannelFixture {
  protected:
    OutOfMemoryTest() {
        install();
        platform.processes = {"Merrowd"};
        trader.setForwarder(&forwarder);
    }

    // Runs `operation` with its first allocation failing, then its second, and so on until none fails. The
    // operation returns true if it succeeded.
    template <class Operation>
    void failEachRequest(Operation operation) {
        Outcome outcome = Outcome::done;
        test::refuseEachRequest([&] { outcome = run(operation); },
                                [&](bool refused) {
                                    EXPECT_TRUE(refused || outcome == Outcome::done)
                                        << "failed without a reason";
                                    EXPECT_NE(outcome, Outcome::wrong);
                                });
    }

    MacOSXTransferObjForwarder forwarder;
    POSTransferObjTrader trader;
    const CPPObjectID objectId{makeArray("abcdefghijklmnop")};
    const CPPClassID classId{makeArray("ABCDEFGHIJKLMNOP")};

    std::string normalAnswer() {
        POSTransferObj answer(1, 11, 0);
        answer.writeUInt32(103, 5);
        answer.writeByteArray(105, objectId);
        answer.writeString(109, "info");
        answer.writeString(111, "result");
        answer.writeUInt32(115, 1);
        answer.writeUInt32(118, 7);
        answer.writeString(120, std::string("\1\0\0\0message", 11));
        return test::toText(answer.bytes());
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

TEST_F(OutOfMemoryTest, Communicator_AddressThatCannotBeCreated_IsNotConstructed) {
    std::unique_ptr<Client_to_POS_Communicator> communicator;
    const auto construct = [&] {
        try {
            communicator = std::make_unique<Client_to_POS_Communicator>();
        } catch (const std::bad_alloc&) {
            communicator.reset();
        }
    };
    test::refuseEachRequest(construct, [&](bool refused) {
        EXPECT_EQ(communicator == nullptr, refused);
        if (communicator == nullptr) return;
        EventDescriptor event;
        communicator->CreateEvent(serverEvent::kBufferClass, serverEvent::kData, event.get());
        EXPECT_EQ(
            AEGetAttributePtr(event.get(), keyAddressAttr, typeApplSignature, nullptr, nullptr, 0, nullptr),
            noErr);
    });
}

TEST_F(OutOfMemoryTest, RequestWithoutMemoryForItsBytes_IsTheWritersFailure) {
    struct Request : POSTransferObj {
        explicit Request(const StructuredPart& field) : field_(field) { deferFields(&field_, 1); }
        const StructuredPart field_;
    };
    const Request request(StructuredPart::ofNumber(1, 10));
    std::unique_ptr<CPPException> failure;
    {
        test::HeapWatch watch;
        watch.refuse(1, test::HeapWatch::Refusal::kOnce);
        failure = test::failureOf<StructuredWriteFailedException>([&] { request.copyWireForm(); });
    }
    ASSERT_NE(failure, nullptr);
    EXPECT_EQ(request.copyWireForm().length, 10u + 8u + 4u);
}

TEST_F(OutOfMemoryTest, RegisterApplication_EndsInAnExceptionOrRegisters) {
    answerAlways(normalAnswer());
    const std::vector<CPPClassID> classes{classId};
    trader.registerApplication("App", classes, objectId);
    const auto sent = platform.sent.back().directParameter;
    failEachRequest([&] {
        const auto registered = trader.registerApplication("App", classes, objectId);
        return registered.outcome == POSOutcome::kDone && registered.value.applicationId == 5 &&
               registered.value.checksClasses && platform.sent.back().directParameter == sent;
    });
}

TEST_F(OutOfMemoryTest, InstantiateObject_EndsInAnExceptionOrReturnsTheObject) {
    answerAlways(normalAnswer());
    failEachRequest([&] {
        const auto created = trader.instantiateObject(5, classId, kNoExecuter);
        return created.outcome == POSOutcome::kDone && created.value.object.compare(objectId) == 0 &&
               created.value.message.text == "message";
    });
}

TEST_F(OutOfMemoryTest, CallMethod_EndsInAnExceptionOrReturnsTheResult) {
    answerAlways(normalAnswer());
    const MethodCall call{objectId, std::nullopt, "name", {}};
    failEachRequest([&] {
        const auto reply = trader.callMethod(5, call);
        return reply.outcome == POSOutcome::kDone && blockText(reply.value.result) == "result" &&
               reply.value.message.text == "message";
    });
}

TEST_F(OutOfMemoryTest, ExecuteCommandAndGetInformation_EndInAnExceptionOrReturnTheBlock) {
    answerAlways(normalAnswer());
    const uint8_t bytes[] = {1, 2, 3};
    failEachRequest([&] {
        const auto reply = trader.executeCommand(5, {{bytes, 1}, {bytes, 3}});
        return reply.outcome == POSOutcome::kDone && blockText(reply.value) == "result";
    });
    failEachRequest([&] {
        const auto reply = trader.getInformation(5, {bytes, 3});
        return reply.outcome == POSOutcome::kDone && blockText(reply.value) == "info";
    });
}

TEST_F(OutOfMemoryTest, ExecuteCommand_SendsTheWholeCommandOrNothing) {
    answerAlways(normalAnswer());
    const uint8_t command[] = {'c', 'o', 'm', 'm', 'a', 'n', 'd'};
    const uint8_t argument[] = {'!'};
    for (const uint32_t argumentLength : {1u, 0u}) {
        const auto execute = [&] {
            return trader.executeCommand(5, {{command, sizeof command}, {argument, argumentLength}})
                       .outcome == POSOutcome::kDone;
        };
        ASSERT_TRUE(execute());
        const auto sent = platform.sent.back().directParameter;
        failEachRequest([&] { return execute() && platform.sent.back().directParameter == sent; });
    }
}

TEST_F(OutOfMemoryTest, TransferPack_HoldsAllThatItReportsOrIsNotMade) {
    for (const size_t recordLength : {16u, 608u, 700u}) {
        std::string bytes(recordLength, 'x');
        bytes[14] = 100;  // bytes of additional data
        bytes[15] = 0;
        const CPPByteArray record = makeArray(bytes);
        failEachRequest([&] {
            const TransferPack pack(record);
            uint16_t size = 0;
            const uint8_t* const data = pack.getAdditionalData(size);
            std::string expected = bytes;
            expected.resize(708);
            return size == 100 && pack.getStatus() == 0x7878 &&
                   std::equal(data, data + size, expected.begin() + 608,
                              [](uint8_t left, char right) { return left == static_cast<uint8_t>(right); });
        });
    }
}

TEST_F(OutOfMemoryTest, CopiesOfTransferObjects_AreCompleteOrEndInAnException) {
    POSTransferObj object(1, 10, 14);
    const CPPByteArray wire = object.bytes();
    // Arrays of the same size, so that only the content shows whether an array was replaced.
    const CPPByteArray other = test::plainArray(wire.getSize());
    failEachRequest([&] {
        CPPByteArray copy = other;
        if (copy.getSize() != other.getSize()) throw std::bad_alloc();
        object.copyBytesTo(copy);
        return copy.compare(wire) == 0;
    });
    failEachRequest([&] {
        POSTransferObj rebuilt(1, 20, 13);
        rebuilt.copyBytesFrom(wire);
        return rebuilt.bytes().compare(wire) == 0;
    });
}

TEST_F(OutOfMemoryTest, WriteByteArray_OfALargeTemporary_WritesAllOrThrows) {
    CPPByteArray field;
    field.setFilled(4096, 0x5A);
    POSTransferObj expected(1, 11, 14);
    expected.writeByteArray(111, field);
    failEachRequest([&] {
        POSTransferObj object(1, 11, 14);
        CPPByteArray temporary(field);
        if (temporary.getSize() != field.getSize()) throw std::bad_alloc();
        object.writeByteArray(111, std::move(temporary));
        return object.bytes().compare(expected.bytes()) == 0;
    });
}

TEST_F(OutOfMemoryTest, ReadIdentifier_ReplacesAnotherIdentifierOrEndsInAnException) {
    failEachRequest([&] {
        POSTransferObj object(1, 11, 0);
        object.writeByteArray(105, objectId);
        CPPObjectID identifier(classId);
        if (identifier.getSize() != kPOSIdentifierSize) throw std::bad_alloc();
        readIdentifier(object, 105, identifier);
        return identifier.compare(objectId) == 0;
    });
}

TEST_F(OutOfMemoryTest, ErrorAnswer_IsReleasedWhateverFails) {
    POSTransferObj answer(1, 20, 0);
    answer.writeString(150, "no such object");
    answer.writeUInt32(151, 25);
    answerAlways(test::toText(answer.bytes()));
    bool thrown = false;
    failEachRequest([&] {
        try {
            trader.deleteObject(5, objectId);
        } catch (CPPException* caught) {
            const std::unique_ptr<CPPException> failure(caught);
            thrown = thrown || failure->getTypeCode() == 25;
            return true;
        }
        return false;
    });
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
    failEachRequest([&] {
        gone = true;
        return trader.unregisterApplication(5) == POSOutcome::kDone;
    });
    testing::internal::GetCapturedStdout();
}

TEST_F(OutOfMemoryTest, Recording_ContainsWholeExchangesOnlyAndThrowsNothing) {
    const test::TemporaryFolder folder;
    const std::string path = folder.path("recording");
    POSTransferObj request(1, 10, 13);
    POSTransferObj reply(1, 11, 13);
    reply.writeString(111, std::string(5000, 'x'));
    const Trace trace("all,file=" + folder.path("trace"));
    auto file = std::make_unique<RecordingFile>(path);
    size_t complete = 0;
    test::refuseEachRequest(
        [&] {
            file->addReply({}, request, reply);
            file->addFailure({}, request, "The line is dead.");
        },
        [&](bool refused) {
            if (!refused) ++complete;
            file = std::make_unique<RecordingFile>(path);
        });
    EXPECT_GT(complete, 0u);
    const std::vector<Properties> sections =
        ConfigFileSystem::readSections(folder.read("recording"), recording::kSectionKey);
    EXPECT_GE(sections.size(), 2 * complete);
    for (const Properties& section : sections) {
        EXPECT_TRUE(section.contains(recording::kRequestKey));
        EXPECT_NE(section.contains(recording::kReplyPlaceKey), section.contains(recording::kFailureKey));
        EXPECT_TRUE(section.contains(recording::kEndKey));
    }
    const std::vector<std::string> entries = test::splitTraceEntries(folder.read("trace"));
    EXPECT_FALSE(entries.empty());
    for (const std::string& entry : entries)
        EXPECT_EQ(entry, "exchange: the recording ends, because it cannot be written: out of memory");
}

}  // namespace
}  // namespace dovrel
