#include "portability/transport/Frame.h"

#include <gtest/gtest.h>

using namespace portability;

namespace {

constexpr size_t kHeader = sizeof(FrameHeader);

FrameHeader header(FrameKind kind, uint16_t place, uint32_t imageSize) {
    FrameHeader made;
    made.kind = kind;
    made.place = place;
    made.imageSize = imageSize;
    return made;
}

FrameHeader bringing(FrameHeader made) {
    made.bringsFile = 1;
    return made;
}

}  // namespace

TEST(Frame, InlineImage_FillsThePacketExactly) {
    const FrameHeader request = header(FrameKind::request, kInlineImage, 16);
    EXPECT_TRUE(isPlausible(request, kHeader + 16, false));
    EXPECT_FALSE(isPlausible(request, kHeader + 15, false));
    EXPECT_FALSE(isPlausible(request, kHeader + 24, false));
    EXPECT_FALSE(isPlausible(bringing(request), kHeader + 16, true));
    EXPECT_TRUE(isPlausible(header(FrameKind::reply, kInlineImage, 0), kHeader, false));
}

TEST(Frame, WrongMagic_IsRefused) {
    FrameHeader request = header(FrameKind::request, kInlineImage, 0);
    request.magic ^= 1;
    EXPECT_FALSE(isPlausible(request, kHeader, false));
}

// Version 1 did not know packets of the kind `released`.
TEST(Frame, MarkOfAnEarlierVersion_IsRefused) {
    FrameHeader request = header(FrameKind::request, kInlineImage, 0);
    request.magic = 0x41457631;
    EXPECT_FALSE(isPlausible(request, kHeader, false));
}

TEST(Frame, UnknownKind_IsRefused) {
    for (const int kind : {0, 6, 0xFFFF}) {
        EXPECT_FALSE(isPlausible(header(static_cast<FrameKind>(kind), kInlineImage, 0), kHeader, false))
            << kind;
    }
}

TEST(Frame, Slot_HasNoBytesBehindTheHeader) {
    const FrameHeader request = header(FrameKind::request, 0, 20000);
    EXPECT_TRUE(isPlausible(request, kHeader, false));
    EXPECT_TRUE(isPlausible(bringing(request), kHeader, true));
    EXPECT_FALSE(isPlausible(request, kHeader + 8, false));
}

TEST(Frame, SlotNumber_IsBounded) {
    EXPECT_TRUE(isPlausible(header(FrameKind::request, kSlots - 1, 20000), kHeader, false));
    EXPECT_FALSE(isPlausible(header(FrameKind::request, kSlots, 20000), kHeader, false));
}

TEST(Frame, PassingImage_BringsItsFile) {
    EXPECT_TRUE(isPlausible(bringing(header(FrameKind::reply, kPassingImage, 20000)), kHeader, true));
    EXPECT_FALSE(isPlausible(header(FrameKind::reply, kPassingImage, 20000), kHeader, false));
}

TEST(Frame, AnnouncedFile_MustHaveCome_AndNoOther) {
    EXPECT_FALSE(isPlausible(bringing(header(FrameKind::request, 0, 20000)), kHeader, false));
    EXPECT_FALSE(isPlausible(header(FrameKind::request, 0, 20000), kHeader, true));
    FrameHeader odd = header(FrameKind::request, 0, 20000);
    odd.bringsFile = 2;
    EXPECT_FALSE(isPlausible(odd, kHeader, true));
}

TEST(Frame, ImageInSharedMemory_IsBounded) {
    EXPECT_FALSE(isPlausible(header(FrameKind::request, 0, 0), kHeader, false));
    EXPECT_TRUE(isPlausible(header(FrameKind::request, 0, kLargestMessage), kHeader, false));
    EXPECT_FALSE(isPlausible(header(FrameKind::request, 0, kLargestMessage + 1), kHeader, false));
    EXPECT_FALSE(isPlausible(header(FrameKind::request, 0, 0xFFFFFFFF), kHeader, false));
}

TEST(Frame, ReleasedSlots_AreThoseThatExist_AndOnlyInRequests) {
    FrameHeader request = header(FrameKind::request, kInlineImage, 0);
    request.released = (1u << kSlots) - 1;
    EXPECT_TRUE(isPlausible(request, kHeader, false));
    request.released = 1u << kSlots;
    EXPECT_FALSE(isPlausible(request, kHeader, false));
    FrameHeader reply = header(FrameKind::reply, kInlineImage, 0);
    reply.released = 1;
    EXPECT_FALSE(isPlausible(reply, kHeader, false));
}

TEST(Frame, Mailbox_BringsAFileAndNothingElse) {
    EXPECT_TRUE(isPlausible(bringing(header(FrameKind::mailbox, kInlineImage, 0)), kHeader, true));
    EXPECT_FALSE(isPlausible(header(FrameKind::mailbox, kInlineImage, 0), kHeader, false));
    EXPECT_FALSE(isPlausible(bringing(header(FrameKind::mailbox, kInlineImage, 0)), kHeader + 1, true));
}

TEST(Frame, WakeUp_BringsNothing) {
    EXPECT_TRUE(isPlausible(header(FrameKind::wakeUp, kInlineImage, 0), kHeader, false));
    EXPECT_FALSE(isPlausible(bringing(header(FrameKind::wakeUp, kInlineImage, 0)), kHeader, true));
    EXPECT_FALSE(isPlausible(header(FrameKind::wakeUp, kInlineImage, 0), kHeader + 1, false));
}

TEST(Frame, Released_IsOnlyAHeader) {
    FrameHeader released = header(FrameKind::released, kInlineImage, 0);
    released.released = (1U << kSlots) - 1;
    EXPECT_TRUE(isPlausible(released, kHeader, false));
    EXPECT_FALSE(isPlausible(released, kHeader + 8, false));
    EXPECT_FALSE(isPlausible(bringing(released), kHeader, true));
    released.released = 1U << kSlots;
    EXPECT_FALSE(isPlausible(released, kHeader, false));
}
