// Exceptions that the code of a class does not handle.
#include "tests/server/FailingClass.h"

#include <new>
#include <stdexcept>

#include "client/exceptions/CPPException.h"
#include "tests/server/ExchangesFixture.h"

namespace merrowd::test {
namespace {

class FailingClassTest : public ExchangesFixture {
  protected:
    Reply callFailingMethod(FailingClass::Action fail) {
        state_.classes.add(std::make_shared<FailingClass>(std::move(fail)));
        session_ = readReply(send(registerRequest("Demo"))).number(posField::kSession);
        object_ = readReply(send(instantiateRequest(session_, "Failing"))).data(posField::kObject);
        Reply reply = readReply(send(callRequest(session_, object_, "fail")));
        EXPECT_EQ(readReply(send(callRequest(session_, object_, "work"))).data(posField::kResult), "done");
        return reply;
    }

    void expectMethodFailure(const FailingClass::Action& fail, const std::string& message) {
        const std::string text = "the method \"fail\" of the class Failing let an exception out: " + message;
        const Reply reply = callFailingMethod(fail);
        EXPECT_EQ(reply.code(), 28u);
        EXPECT_EQ(reply.text(), text);
        EXPECT_EQ(reply.command(), 14u);
        EXPECT_NE(logText().find(" " + text + "\n"), std::string::npos) << logText();
    }
};

TEST_F(FailingClassTest, StdException_IsAnsweredAsAMethodThatFailedAndLogged) {
    expectMethodFailure([] { throw std::runtime_error("no paper"); }, "no paper");
}

TEST_F(FailingClassTest, CPPException_IsAnsweredAsAMethodThatFailedAndLogged) {
    expectMethodFailure([] { throw new dovrel::CPPException("no ink"); }, "no ink");
}

TEST_F(FailingClassTest, Number_IsAnsweredAsAMethodThatFailedAndLogged) {
    expectMethodFailure([] { throw 5; }, "it is not of a known type");
}

TEST_F(FailingClassTest, LackOfMemory_IsAnsweredAsAMethodThatFailedAndLogged) {
    expectMethodFailure([] { throw std::bad_alloc(); }, std::bad_alloc().what());
}

TEST_F(FailingClassTest, ExceptionInACreation_IsAnsweredAsAFailedInstantiationAndLogged) {
    state_.classes.add(std::make_shared<FailingClass>([] { throw std::runtime_error("no paper"); }, true));
    session_ = readReply(send(registerRequest("Demo"))).number(posField::kSession);
    const Reply reply = readReply(send(instantiateRequest(session_, "Failing")));
    const std::string text = "the creation of an object of the class Failing let an exception out: no paper";
    EXPECT_EQ(reply.code(), 26u);
    EXPECT_EQ(reply.text(), text);
    EXPECT_NE(logText().find(" " + text + "\n"), std::string::npos);
    EXPECT_EQ(state_.applications.objectCount(), 0u);
}

TEST_F(FailingClassTest, ExceptionElsewhereInAClass_IsAnsweredAndLogged) {
    class Nameless : public FailingClass {
      public:
        Nameless() : FailingClass([] {}) {}
        std::vector<std::string> methods() const override { throw std::runtime_error("which ones?"); }
    };
    state_.classes.add(std::make_shared<Nameless>());
    session_ = readReply(send(registerRequest("Demo"))).number(posField::kSession);
    object_ = readReply(send(instantiateRequest(session_, "Failing"))).data(posField::kObject);
    const Reply reply = readReply(send(callRequest(session_, object_, "work")));
    EXPECT_EQ(reply.code(), 23u);
    EXPECT_EQ(reply.text(), "the server let an exception out: which ones?");
    EXPECT_EQ(reply.command(), 14u);
    EXPECT_NE(logText().find(" the server let an exception out: which ones?\n"), std::string::npos);
}

TEST_F(FailingClassTest, Refusal_IsNotAFaultAndWritesNoLog) {
    const Reply reply = callFailingMethod([] { throw Refusal{28, "no"}; });
    EXPECT_EQ(reply.text(), "no");
    EXPECT_NE(access(folder_.path("Merrowd.log").c_str(), F_OK), 0);
}

}  // namespace
}  // namespace merrowd::test
