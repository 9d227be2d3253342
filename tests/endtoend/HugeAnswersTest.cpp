// A server whose results are huge, in each command.
#include "tests/endtoend/EndToEnd.h"

namespace dovrel::test {
namespace {

class HugeAnswers : public InSession {
  protected:
    static constexpr uint32_t kHuge = 40'000'000;

    // The server fills them with one byte.
    static void expectHuge(const Answered& answered) {
        EXPECT_EQ(answered.status, POS_OK);
        ASSERT_EQ(answered.bytes.size(), kHuge);
        EXPECT_EQ(answered.bytes.find_first_not_of('\x5A'), std::string::npos);
    }
};

TEST_F(HugeAnswers, ToEachCommand_ArriveWholeAndTheNextCallSucceeds) {
    const uint32_t application = host_.registered({"Echo"});
    ServerControl::send(misbehaviour("huge") + setting("hugeSize", kHuge));
    const uint32_t other = host_.registered({"Echo"});
    ObjectId echo = host_.instantiate(other, "Echo");
    ASSERT_TRUE(echo.isThere());
    expectHuge(host_.call(other, echo, "echo", "small"));
    expectHuge(host_.command(other, "ping"));
    expectHuge(host_.information(other, littleEndian(3).substr(0, 2)));
    EXPECT_EQ(library_.posDeleteObject(other, echo.handle()), POS_OK);
    EXPECT_EQ(library_.posUnregisterApplication(other), POS_OK);
    ServerControl::send(misbehaviour("none"));
    EXPECT_EQ(host_.command(application, "ping").status, POS_OK);
}

}  // namespace
}  // namespace dovrel::test
