// Tests the notes that the trader makes about failures for the error log.
#include "client/exceptions/CPPException.h"
#include "platform/trace/FailureNotes.h"
#include "tests/InterProcessCommunication/TraderFixture.h"
#include "tests/support/library/Failures.h"

namespace dovrel {
namespace {

using test::exceptionAnswer;
using test::kNormalAnswer;
using test::Operation;
using test::uint32Part;

class POSTransferObjTraderNotesTest : public test::TraderFixture {
  protected:
    /// Runs the operation and ignores its result.
    void run(const Operation& operation) {
        test::failureOf([&] { operation.run(trader); });
    }

    FailureNotes notes;
};

TEST_F(POSTransferObjTraderNotesTest, ErrorAnswer_IsNotedWithCodeTextAndRequestWhetherItIsThrownOrNot) {
    for (const Operation& operation : operations()) {
        for (const uint32_t code : {0u, 3u, 24u, 36u, 99u, 0xFFFFFFFFu}) {
            notes.clear();
            prepare(operation);
            forwarder.answerParts(exceptionAnswer(code, "text"));
            run(operation);
            ASSERT_TRUE(notes.serverError()) << operation.name << code;
            EXPECT_EQ(notes.serverError()->code, code) << operation.name;
            EXPECT_EQ(notes.serverError()->text, "text") << operation.name;
            const std::string request = notes.request().substr(0, notes.request().find(','));
            EXPECT_EQ(request, operation.name) << code;
        }
    }
}

TEST_F(POSTransferObjTraderNotesTest, NormalReply_LeavesNoNotes) {
    for (const Operation& operation : operations()) {
        prepare(operation);
        forwarder.answerParts(kNormalAnswer + operation.replyParts);
        run(operation);
        EXPECT_FALSE(notes.serverError()) << operation.name;
        EXPECT_EQ(notes.request(), "") << operation.name;
        EXPECT_EQ(notes.failedStep(), "") << operation.name;
    }
}

TEST_F(POSTransferObjTraderNotesTest, ReplyThatCannotBeRead_AndExchangeThatFails_LeaveTheRequest) {
    const Operation& call = operationNamed("call method");
    forwarder.answerBytes({});
    run(call);
    EXPECT_EQ(notes.request(), "call method, method name = \"m\"");
    EXPECT_FALSE(notes.serverError());
    notes.clear();
    forwarder.throwAtRequest("broken");
    run(call);
    EXPECT_EQ(notes.request(), "call method, method name = \"m\"");
}

TEST_F(POSTransferObjTraderNotesTest, OtherInterfaceVersion_LeavesBothVersions) {
    const Operation& registration = operationNamed("register application");
    forwarder.answerParts(kNormalAnswer + uint32Part(118, 8));
    run(registration);
    EXPECT_EQ(notes.failedStep(), "interface version: the server has 8, the library needs 7");
}

}  // namespace
}  // namespace dovrel
