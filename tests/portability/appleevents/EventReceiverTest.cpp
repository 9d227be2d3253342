#include "portability/appleevents/EventReceiver.h"

#include <CoreServices/CoreServices.h>
#include <gtest/gtest.h>

#include <vector>

#include "Events.h"
#include "portability/appleevents/EventImage.h"
#include "tests/portability/support/Images.h"

using namespace portability;

namespace {

int handled = 0;

OSErr count(const AppleEvent*, AppleEvent*, SRefCon) {
    ++handled;
    return noErr;
}

struct SentReplies final : RequestHandler::ReplySender {
    Channel::Sent send(int32_t result, const MessageMemory& image) override {
        results.push_back(result);
        imageSizes.push_back(image.size());
        return outcomes.empty() ? Channel::Sent::done : outcomes.at(results.size() - 1);
    }

    std::vector<int32_t> results;
    std::vector<size_t> imageSizes;
    std::vector<Channel::Sent> outcomes;
};

class EventReceiverTest : public testing::Test {
  protected:
    EventReceiverTest() {
        handled = 0;
        AEInstallEventHandler(kTestClass, kEcho, count, SRefCon(), false);
    }
    ~EventReceiverTest() override { AERemoveEventHandler(kTestClass, kEcho, nullptr, false); }

    static Bytes event(int64_t forgedSize = -1) {
        const UInt32 codes[] = {kTestClass, kEcho};
        const auto text = [](const UInt32& code) {
            return std::string(reinterpret_cast<const char*>(&code), sizeof code);
        };
        return itemBytes(keyEventClassAttr, text(codes[0]), 1) +
               itemBytes(keyEventIDAttr, text(codes[1]), 1) +
               itemBytes(keyDirectObject, "text", 2, forgedSize);
    }

    bool handle(const Bytes& image, AESendMode mode = kAEWaitReply) {
        ReceivedFrame frame;
        frame.header.sendMode = static_cast<int32_t>(mode);
        frame.header.imageSize = static_cast<uint32_t>(image.size());
        frame.image = image.data();
        return receiver_.handle(frame, getpid(), replies_);
    }

    EventReceiver receiver_;
    SentReplies replies_;
};

}  // namespace

TEST_F(EventReceiverTest, Handle_WholeImage_RunsTheHandlerAndSendsOneReply) {
    EXPECT_TRUE(handle(event()));
    EXPECT_EQ(handled, 1);
    EXPECT_EQ(replies_.results, std::vector<int32_t>{noErr});
}

TEST_F(EventReceiverTest, Handle_EventWithoutHandler_SendsThatResult) {
    EXPECT_TRUE(handle({}));
    EXPECT_EQ(replies_.results, std::vector<int32_t>{errAEEventNotHandled});
}

TEST_F(EventReceiverTest, Handle_DamagedImage_DropsTheSenderBeforeAnyHandlerRuns) {
    EXPECT_FALSE(handle(event(5000)));
    EXPECT_EQ(handled, 0);
    EXPECT_TRUE(replies_.results.empty());
}

TEST_F(EventReceiverTest, Handle_EventThatWantsNoReply_SendsNone) {
    EXPECT_TRUE(handle(event(), kAENoReply));
    EXPECT_EQ(handled, 1);
    EXPECT_TRUE(replies_.results.empty());
}

TEST_F(EventReceiverTest, Handle_ReplyForWhichThereIsNoMemory_SendsMemFullErrWithoutAnImage) {
    replies_.outcomes = {Channel::Sent::failed, Channel::Sent::done};
    EXPECT_TRUE(handle(event()));
    EXPECT_EQ(replies_.results, (std::vector<int32_t>{noErr, memFullErr}));
    EXPECT_EQ(replies_.imageSizes.back(), 0u);
}

TEST_F(EventReceiverTest, Handle_SenderThatDoesNotTakeItsReply_IsDropped) {
    for (const Channel::Sent outcome : {Channel::Sent::full, Channel::Sent::closed}) {
        replies_ = SentReplies();
        replies_.outcomes = {outcome};
        EXPECT_FALSE(handle(event()));
    }
}
