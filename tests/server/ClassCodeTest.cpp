#include "server/ClassCode.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "client/exceptions/POSException.h"

namespace merrowd::test {
namespace {

std::string theWork() {
    return "the work";
}

template <class Work>
std::string escapedText(const Work& work) {
    try {
        runClassCode(28, theWork, work);
    } catch (const EscapedException& escaped) {
        EXPECT_EQ(escaped.code, 28u);
        return escaped.text;
    }
    return "nothing escaped";
}

TEST(ClassCode, ThatReturns_PassesItsResultOn) {
    EXPECT_EQ(runClassCode(28, theWork, [] { return 5; }), 5);
}

TEST(ClassCode, ThatRefuses_RefusesWithItsOwnCodeAndText) {
    try {
        runClassCode(28, theWork, [] { throw Refusal{99, "no"}; });
        FAIL();
    } catch (const EscapedException&) {
        FAIL() << "a Refusal is a reply, not a fault";
    } catch (const Refusal& refusal) {
        EXPECT_EQ(refusal.code, 99u);
        EXPECT_EQ(refusal.text, "no");
    }
}

TEST(ClassCode, ThatLetsAnExceptionOut_FailsWithItsMessage) {
    EXPECT_EQ(escapedText([] { throw std::runtime_error("no paper"); }),
              "the work let an exception out: no paper");
    EXPECT_EQ(escapedText([] { throw new dovrel::CPPException("no ink"); }),
              "the work let an exception out: no ink");
    EXPECT_EQ(escapedText([] { throw new dovrel::POSException("no class"); }),
              "the work let an exception out: no class");
    EXPECT_EQ(escapedText([] { throw new dovrel::CPPException(); }),
              "the work let an exception out: a failure without a message");
    EXPECT_EQ(escapedText([] { throw 5; }), "the work let an exception out: it is not of a known type");
}

}  // namespace
}  // namespace merrowd::test
