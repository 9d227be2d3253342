#include "portability/transport/Mailbox.h"

#include <gtest/gtest.h>
#include <sched.h>

#include <cstring>
#include <string>
#include <vector>

#include "tests/portability/support/MemoryFile.h"

using namespace portability;

namespace {

class MailboxTest : public testing::Test {
  protected:
    MailboxTest() {
        FileDescriptor file;
        sender_ = Mailbox::create(file);
        receiver_ = Mailbox::open(std::move(file));
    }

    static void post(Mailbox& mailbox, uint64_t id, const std::string& image) {
        FrameHeader header;
        header.id = id;
        mailbox.post(&header, reinterpret_cast<const uint8_t*>(image.data()), image.size());
    }

    // Returns "id:image" of the frame that was taken, "(nothing)" or "(hint)".
    static std::string take(Mailbox& mailbox) {
        Mail mail;
        if (!mailbox.take(mail)) return "(nothing)";
        if (mail.size == 0) return "(hint)";
        FrameHeader header;
        std::memcpy(&header, mail.bytes, sizeof header);
        const auto* image = reinterpret_cast<const char*>(mail.bytes + sizeof header);
        return std::to_string(header.id) + ":" + std::string(image, mail.size - sizeof header);
    }

    // Moves this thread to the processor.
    static void runOn(int processor) {
        cpu_set_t one;
        CPU_ZERO(&one);
        CPU_SET(static_cast<size_t>(processor), &one);
        ASSERT_EQ(sched_setaffinity(0, sizeof one, &one), 0);
    }

    std::unique_ptr<Mailbox> sender_;
    std::unique_ptr<Mailbox> receiver_;
};

}  // namespace

TEST_F(MailboxTest, Frames_GoBothWays) {
    ASSERT_NE(sender_, nullptr);
    ASSERT_NE(receiver_, nullptr);
    post(*sender_, 1, "request");
    EXPECT_EQ(take(*receiver_), "1:request");
    post(*receiver_, 1, "");
    EXPECT_EQ(take(*sender_), "1:");
    post(*sender_, 2, std::string(kLargestInlineImage, 'x'));
    EXPECT_EQ(take(*receiver_), "2:" + std::string(kLargestInlineImage, 'x'));
}

TEST_F(MailboxTest, Take_GivesEachFrameOnce) {
    EXPECT_EQ(take(*receiver_), "(nothing)");
    post(*sender_, 1, "once");
    EXPECT_EQ(take(*receiver_), "1:once");
    EXPECT_EQ(take(*receiver_), "(nothing)");
    EXPECT_EQ(take(*sender_), "(nothing)");
}

TEST_F(MailboxTest, Hint_HasNoBytes) {
    receiver_->post(nullptr, nullptr, 0);
    EXPECT_EQ(take(*sender_), "(hint)");
}

TEST_F(MailboxTest, WasTaken_TellsWhetherTheReceiverSawIt) {
    EXPECT_TRUE(sender_->wasTaken());
    post(*sender_, 1, "x");
    EXPECT_FALSE(sender_->wasTaken());
    take(*receiver_);
    EXPECT_TRUE(sender_->wasTaken());
}

TEST_F(MailboxTest, WasTaken_OutlivesTheReceiver) {
    post(*sender_, 1, "x");
    take(*receiver_);
    post(*sender_, 2, "y");
    receiver_.reset();
    EXPECT_FALSE(sender_->wasTaken());
}

TEST_F(MailboxTest, Looking_IsSeenByTheOtherSide) {
    EXPECT_FALSE(sender_->isOtherLooking());
    receiver_->setLooking(true);
    EXPECT_TRUE(sender_->isOtherLooking());
    EXPECT_FALSE(receiver_->isOtherLooking());
    receiver_->setLooking(false);
    EXPECT_FALSE(sender_->isOtherLooking());
}

TEST_F(MailboxTest, Processor_IsKnownFromTheBeginningAndWhereverASideMoves) {
    cpu_set_t allowed;
    ASSERT_EQ(sched_getaffinity(0, sizeof allowed, &allowed), 0);
    std::vector<int> processors;
    for (int i = 0; i < CPU_SETSIZE; ++i) {
        if (CPU_ISSET(i, &allowed)) processors.push_back(i);
    }
    runOn(processors.back());
    FileDescriptor file;
    const auto sender = Mailbox::create(file);
    const auto receiver = Mailbox::open(std::move(file));
    EXPECT_FALSE(sender->isOtherElsewhere());
    EXPECT_FALSE(receiver->isOtherElsewhere());
    if (processors.size() > 1) {
        runOn(processors.front());
        receiver->noteProcessor();
        EXPECT_TRUE(receiver->isOtherElsewhere());
        runOn(processors.back());
        EXPECT_TRUE(sender->isOtherElsewhere());
    }
    sched_setaffinity(0, sizeof allowed, &allowed);
}

TEST(Mailbox, Open_OfAnythingElse_IsRefused) {
    FileDescriptor file;
    const auto mailbox = Mailbox::create(file);
    const off_t size = lseek(file.get(), 0, SEEK_END);
    for (const off_t wrong : {off_t{0}, size - 1, size + 1}) {
        FileDescriptor other = memoryFile(static_cast<size_t>(wrong), F_SEAL_SHRINK);
        EXPECT_EQ(Mailbox::open(std::move(other)), nullptr) << wrong;
    }
    FileDescriptor unsealed = memoryFile(static_cast<size_t>(size), 0);
    EXPECT_EQ(Mailbox::open(std::move(unsealed)), nullptr);
    EXPECT_EQ(Mailbox::open(FileDescriptor()), nullptr);
}
