#include "portability/transport/Packet.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/time.h>

#include <string>
#include <thread>

#include "tests/portability/support/MemoryFile.h"
#include "tests/portability/support/RawSocket.h"
#include "tests/support/Processes.h"

using namespace portability;

namespace {

class PacketTest : public testing::Test {
  protected:
    int send(std::string bytes) { return Packet(bytes.data(), bytes.size()).send(ends_.first.get()); }

    Packet::Received receive(size_t room = 100, Packet::Wait wait = Packet::Wait::no) {
        received_.assign(room, '?');
        size_t size = 0;
        const auto result = Packet(received_.data(), received_.size())
                                .receive(ends_.second.get(), size, file_, refused_, wait);
        received_.resize(size);
        return result;
    }

    std::pair<FileDescriptor, FileDescriptor> ends_ = connectedSockets();
    std::string received_;
    FileDescriptor file_;
    std::vector<FileDescriptor> refused_;
};

}  // namespace

TEST_F(PacketTest, BytesOfTwoPlaces_ArriveAsOnePacket) {
    std::string first = "header";
    const std::string second(" and \0more", 10);
    Packet packet(first.data(), first.size());
    packet.append(second.data(), second.size());
    EXPECT_EQ(packet.send(ends_.first.get()), 0);
    EXPECT_EQ(receive(), Packet::Received::packet);
    EXPECT_EQ(received_, first + second);
    EXPECT_FALSE(file_);
    EXPECT_EQ(receive(), Packet::Received::nothing);
}

TEST_F(PacketTest, AttachedFile_ArrivesAsADescriptorThatIsClosedAtExec) {
    const FileDescriptor sent = memoryFile(10, 0, Bytes{'x', 'y'});
    char byte = 'b';
    Packet packet(&byte, 1);
    packet.attach(sent.get());
    EXPECT_EQ(packet.send(ends_.first.get()), 0);
    ASSERT_EQ(receive(), Packet::Received::packet);
    ASSERT_TRUE(file_);
    EXPECT_NE(file_.get(), sent.get());
    EXPECT_NE(fcntl(file_.get(), F_GETFD) & FD_CLOEXEC, 0);
    char content[2] = {};
    EXPECT_EQ(pread(file_.get(), content, 2, 0), 2);
    EXPECT_EQ(std::string(content, 2), "xy");
}

TEST_F(PacketTest, MoreThanOneFile_IsCutAndLeavesNoDescriptorBehind) {
    const FileDescriptor sent = memoryFile(10, 0);
    const int before = openDescriptors();
    for (const size_t count : {2, 3, 20}) {
        ASSERT_TRUE(sendRaw(ends_.first.get(), Bytes{1}, std::vector<int>(count, sent.get())));
        EXPECT_EQ(receive(), Packet::Received::cut) << count;
        file_.reset();
        refused_.clear();
        EXPECT_EQ(openDescriptors(), before) << count;
    }
}

TEST_F(PacketTest, LongerThanTheRoom_IsCut) {
    EXPECT_EQ(send("12345"), 0);
    EXPECT_EQ(receive(5), Packet::Received::packet);
    EXPECT_EQ(send("12345"), 0);
    EXPECT_EQ(receive(4), Packet::Received::cut);
}

TEST_F(PacketTest, FullSocket_IsAnErrorAtOnce) {
    int error = 0;
    for (int sent = 0; error == 0 && sent < 100000; ++sent)
        error = send(std::string(1000, 'x'));
    EXPECT_EQ(error, EAGAIN);
}

TEST_F(PacketTest, OtherEndThatIsGone_IsClosedAndRaisesNoSignal) {
    ends_.first.reset();
    EXPECT_EQ(receive(), Packet::Received::closed);
    std::swap(ends_.first, ends_.second);
    EXPECT_EQ(send("x"), EPIPE);
}

TEST_F(PacketTest, WhatIsNoSocket_IsClosedAndItsErrorToldWhereItIsSent) {
    ends_.first.reset(open("/dev/null", O_RDWR | O_CLOEXEC));
    EXPECT_EQ(send("x"), ENOTSOCK);
    ends_.second.reset(open("/dev/null", O_RDWR | O_CLOEXEC));
    EXPECT_EQ(receive(), Packet::Received::closed);
}

TEST_F(PacketTest, PacketOfAPeerThatLeftWithoutReadingEverything_Arrives) {
    char unread = 'u';
    ASSERT_EQ(Packet(&unread, 1).send(ends_.second.get()), 0);
    ASSERT_EQ(send("last"), 0);
    ends_.first.reset();
    EXPECT_EQ(receive(), Packet::Received::packet);
    EXPECT_EQ(received_, "last");
    EXPECT_EQ(receive(), Packet::Received::closed);
}

TEST_F(PacketTest, Waiting_ReceivesAPacketThatIsSentLater) {
    std::thread sender([this] { send("later"); });
    EXPECT_EQ(receive(100, Packet::Wait::yes), Packet::Received::packet);
    EXPECT_EQ(received_, "later");
    sender.join();
}

TEST_F(PacketTest, Waiting_EndsAfterTheLimitOfTheSocket) {
    timeval limit{};
    limit.tv_usec = 10000;
    ASSERT_EQ(setsockopt(ends_.second.get(), SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit), 0);
    EXPECT_EQ(receive(100, Packet::Wait::yes), Packet::Received::nothing);
}

TEST_F(PacketTest, Waiting_NoticesThatTheOtherEndIsGone) {
    std::thread other([this] { ends_.first.reset(); });
    EXPECT_EQ(receive(100, Packet::Wait::yes), Packet::Received::closed);
    other.join();
}
