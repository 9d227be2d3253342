#include "InterProcessCommunication/IPC_Info.h"

#include <gtest/gtest.h>

#include <type_traits>
#include <utility>

#include "InterProcessCommunication/POSTransferObj.h"
#include "tests/InterProcessCommunication/DeletionWatch.h"

namespace dovrel {
namespace {

using test::DeletionWatch;

static_assert(std::has_virtual_destructor_v<IPC_Info>);

std::unique_ptr<uint8_t[]> newBuffer() {
    return std::unique_ptr<uint8_t[]>(new uint8_t[8]);
}

TEST(IPC_Info, New_HoldsNothing) {
    IPC_Info info;
    EXPECT_EQ(info.getEvent(), nullptr);
    EXPECT_EQ(info.getReply(), nullptr);
    EXPECT_EQ(info.getSendBuffer(), nullptr);
    EXPECT_EQ(info.getReceiveBuffer(), nullptr);
    EXPECT_EQ(info.getSendSize(), 0u);
    EXPECT_EQ(info.getReceiveSize(), 0u);
    EXPECT_EQ(info.takeReplyObject(), nullptr);
}

TEST(IPC_Info, SettingABuffer_ReleasesTheOneBefore) {
    IPC_Info info;
    std::unique_ptr<uint8_t[]> sent = newBuffer();
    std::unique_ptr<uint8_t[]> received = newBuffer();
    DeletionWatch watch;
    watch.add(sent.get());
    watch.add(received.get());
    info.setSendBuffer(std::move(sent), 8);
    info.setReceiveBuffer(std::move(received), 8);
    EXPECT_EQ(watch.deletions(), 0);

    info.setSendBuffer(newBuffer(), 5);
    EXPECT_EQ(watch.deletions(), 1);
    info.setReceiveBuffer(nullptr, 0);
    EXPECT_EQ(watch.deletions(), 2);
    EXPECT_EQ(info.getSendSize(), 5u);
    EXPECT_EQ(info.getReceiveSize(), 0u);
}

TEST(IPC_Info, Buffers_CanBeTakenOut) {
    IPC_Info info;
    std::unique_ptr<uint8_t[]> sent = newBuffer();
    std::unique_ptr<uint8_t[]> received = newBuffer();
    const uint8_t* const sentPlace = sent.get();
    const uint8_t* const receivedPlace = received.get();
    info.setSendBuffer(std::move(sent), 5);
    info.setReceiveBuffer(std::move(received), 8);

    const ByteBlock takenSent = info.takeSendBuffer();
    EXPECT_EQ(takenSent.data.get(), sentPlace);
    EXPECT_EQ(takenSent.length, 5u);
    EXPECT_EQ(info.getSendBuffer(), nullptr);
    EXPECT_EQ(info.getSendSize(), 0u);
    EXPECT_EQ(info.getReceiveBuffer(), receivedPlace);

    const ByteBlock takenReceived = info.takeReceiveBuffer();
    EXPECT_EQ(takenReceived.data.get(), receivedPlace);
    EXPECT_EQ(takenReceived.length, 8u);
    EXPECT_EQ(info.getReceiveBuffer(), nullptr);
    EXPECT_EQ(info.getReceiveSize(), 0u);
}

TEST(IPC_Info, Destructor_ReleasesBothBuffersAndNothingElse) {
    DeletionWatch watch;
    auto info = std::make_unique<IPC_Info>();
    auto replyObject = std::make_unique<POSTransferObj>();
    watch.add(replyObject.get());
    info->setReplyObject(replyObject.get());
    info->setSendBuffer(newBuffer(), 8);
    info->setReceiveBuffer(newBuffer(), 8);

    DeletionWatch buffers;
    buffers.add(info->getSendBuffer());
    buffers.add(info->getReceiveBuffer());
    info.reset();
    EXPECT_EQ(buffers.deletions(), 2);
    EXPECT_EQ(watch.deletions(), 0);
}

TEST(IPC_Info, ReplyObject_BelongsToTheCodeThatTakesItOut) {
    IPC_Info info;
    auto* const replyObject = new POSTransferObj;
    info.setReplyObject(replyObject);
    const std::unique_ptr<POSTransferObj> taken = info.takeReplyObject();
    EXPECT_EQ(taken.get(), replyObject);
    EXPECT_EQ(info.takeReplyObject(), nullptr);
}

}  // namespace
}  // namespace dovrel
