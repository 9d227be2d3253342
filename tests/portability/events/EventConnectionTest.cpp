// Sending to peers that do not behave. The peer is this test, behind an endpoint of its own.
#include "events/EventConnection.h"

#include <CoreServices/CoreServices.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/time.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <thread>

#include "Events.h"
#include "Images.h"
#include "RawSocket.h"
#include "TemporaryEnvironment.h"
#include "events/EventEndpoint.h"

using namespace portability;

namespace {

using Clock = std::chrono::steady_clock;

constexpr char kSignature[] = "RoGu";
constexpr OSType kCode = 'RoGu';

// Accepts connections one after another and lets a function play the application on each.
class Peer {
  public:
    using Play = std::function<void(int connection)>;

    explicit Peer(std::vector<Play> plays) : plays_(std::move(plays)) {
        EXPECT_EQ(EndpointClaim::claim(kCode, claim_), EndpointClaim::Outcome::claimed);
        thread_ = std::thread([this] { run(); });
    }
    ~Peer() { thread_.join(); }

  private:
    void run() {
        // A test's signals are for the sender that waits, not for the peer.
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_BLOCK, &all, nullptr);
        for (const Play& play : plays_) {
            const FileDescriptor connection(accepted());
            play(connection.get());
        }
    }

    int accepted() const {
        for (;;) {
            const int connection = accept4(claim_.listenDescriptor(), nullptr, nullptr, SOCK_CLOEXEC);
            if (connection >= 0 || errno != EINTR) return connection;
        }
    }

    std::vector<Play> plays_;
    EndpointClaim claim_;
    std::thread thread_;
};

Bytes reply(uint64_t id, const std::string& text, int32_t result = noErr) {
    const Bytes image = itemBytes(keyDirectObject, text);
    FrameHeader header;
    header.kind = FrameKind::reply;
    header.id = id;
    header.result = result;
    header.imageSize = static_cast<uint32_t>(image.size());
    return headerBytes(header) + image;
}

// Waits until the other side has closed the connection, or sends more.
void waitForMore(int connection) {
    receiveRaw(connection);
}

class EventConnectionTest : public testing::Test {
  protected:
    OSStatus send(long ticks = kAEDefaultTimeout, AESendMode mode = kAEWaitReply,
                  const std::string& text = "request") {
        Descriptor event = makeEvent(address_, kEcho);
        putText(event, text);
        AEDisposeDesc(reply_.get());
        const Clock::time_point begin = Clock::now();
        const OSStatus status = AESendMessage(event.get(), reply_.get(), mode, ticks);
        seconds_ = std::chrono::duration<double>(Clock::now() - begin).count();
        return status;
    }

    void expectTicks(long ticks) const {
        EXPECT_GE(seconds_, static_cast<double>(ticks) / 60);
        EXPECT_LT(seconds_, static_cast<double>(ticks) / 60 + 5) << "a generous limit for a busy machine";
    }

    TemporaryEnvironment environment_;
    Descriptor address_ = makeAddress(kSignature);
    Descriptor reply_;
    double seconds_ = 0;
};

}  // namespace

TEST_F(EventConnectionTest, Reply_WithTheIdOfTheRequest_IsTheAnswer) {
    Peer peer({[](int connection) { sendRaw(connection, reply(receiveHeader(connection).id, "answer")); }});
    ASSERT_EQ(send(), noErr);
    EXPECT_EQ(textOf(reply_), "answer");
}

TEST_F(EventConnectionTest, Reply_WithAResult_IsTheResultOfTheSend) {
    Peer peer(
        {[](int connection) { sendRaw(connection, reply(receiveHeader(connection).id, "answer", -1708)); }});
    EXPECT_EQ(send(), errAEEventNotHandled);
    EXPECT_EQ(reply_.desc.descriptorType, DescType{typeNull});
}

TEST_F(EventConnectionTest, Request_CarriesModeAndTimeOut) {
    FrameHeader seen;
    {
        Peer peer({[&seen](int connection) {
            seen = receiveHeader(connection);
            sendRaw(connection, reply(seen.id, ""));
        }});
        ASSERT_EQ(send(123, kAEWaitReply | kAENeverInteract), noErr);
    }
    EXPECT_EQ(seen.sendMode, kAEWaitReply | kAENeverInteract);
    EXPECT_EQ(seen.timeOutInTicks, 123);
}

TEST_F(EventConnectionTest, SilentPeer_TimesOutAtTheTick) {
    Peer peer({[](int connection) {
        receiveHeader(connection);
        waitForMore(connection);
    }});
    EXPECT_EQ(send(12), errAETimeout);
    expectTicks(12);
    EXPECT_EQ(send(0, kAENoReply), noErr);
}

TEST_F(EventConnectionTest, PeerThatClosesAfterTheRequest_IsConnectionInvalid) {
    Peer peer({[](int connection) { receiveHeader(connection); }});
    EXPECT_EQ(send(), connectionInvalid);
}

TEST_F(EventConnectionTest, PeerThatClosesWithoutReading_IsConnectionInvalid) {
    Peer peer({[](int connection) {
        pollfd waited{connection, POLLIN, 0};
        poll(&waited, 1, -1);
    }});
    EXPECT_EQ(send(), connectionInvalid);
}

TEST_F(EventConnectionTest, MalformedReplies_AreConnectionInvalid) {
    std::vector<Bytes> answers;
    answers.push_back(Bytes(1, 0));
    answers.push_back(Bytes(100, 0xFF));
    answers.push_back(Bytes(kLargestFrame + 1, 0xFF));
    Bytes cut = reply(1, "answer");
    cut.pop_back();
    answers.push_back(cut);
    FrameHeader request;
    request.id = 1;
    answers.push_back(headerBytes(request));
    answers.push_back(reply(0, "never sent"));
    answers.push_back(reply(2, "not sent yet"));
    answers.push_back(reply(0xFFFFFFFFFFFFFFFF, "never"));
    for (const Bytes& answer : answers) {
        Peer peer({[&answer](int connection) {
            receiveHeader(connection);
            sendRaw(connection, answer);
            waitForMore(connection);
        }});
        EXPECT_EQ(send(), connectionInvalid);
        EXPECT_EQ(reply_.desc.descriptorType, DescType{typeNull});
    }
}

TEST_F(EventConnectionTest, LateReply_OnTheSameConnection_IsNotTheNextAnswer) {
    Peer peer({[](int connection) {
        const FrameHeader first = receiveHeader(connection);
        const FrameHeader second = receiveHeader(connection);
        sendRaw(connection, reply(first.id, "late"));
        sendRaw(connection, reply(second.id, "in time"));
        waitForMore(connection);
    }});
    EXPECT_EQ(send(1), errAETimeout);
    ASSERT_EQ(send(), noErr);
    EXPECT_EQ(textOf(reply_), "in time");
    EXPECT_EQ(send(0, kAENoReply), noErr);
}

TEST_F(EventConnectionTest, LateReply_ThatIsThereBeforeTheNextRequest_IsDropped) {
    std::atomic<bool> timedOut{false};
    std::atomic<bool> answered{false};
    Peer peer({[&](int connection) {
        const FrameHeader first = receiveHeader(connection);
        while (!timedOut)
            std::this_thread::yield();
        sendRaw(connection, reply(first.id, "late"));
        answered = true;
        sendRaw(connection, reply(receiveHeader(connection).id, "in time"));
        waitForMore(connection);
    }});
    EXPECT_EQ(send(0), errAETimeout);
    timedOut = true;
    while (!answered)
        std::this_thread::yield();
    ASSERT_EQ(send(), noErr);
    EXPECT_EQ(textOf(reply_), "in time");
    EXPECT_EQ(send(0, kAENoReply), noErr);
}

TEST_F(EventConnectionTest, SameReplyTwice_IsConnectionInvalid) {
    Peer peer({[](int connection) {
        const FrameHeader first = receiveHeader(connection);
        sendRaw(connection, reply(first.id, "once"));
        receiveHeader(connection);
        sendRaw(connection, reply(first.id, "twice"));
        waitForMore(connection);
    }});
    ASSERT_EQ(send(), noErr);
    EXPECT_EQ(send(), connectionInvalid);
}

TEST_F(EventConnectionTest, FloodOfWakeUps_DoesNotExtendTheTimeOut) {
    std::atomic<bool> stop{false};
    Peer peer({[&stop](int connection) {
        FrameHeader wakeUp;
        wakeUp.kind = FrameKind::wakeUp;
        const Bytes packet = headerBytes(wakeUp);
        while (!stop)
            ::send(connection, packet.data(), packet.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
    }});
    EXPECT_EQ(send(12), errAETimeout);
    expectTicks(12);
    stop = true;
}

TEST_F(EventConnectionTest, SignalsDuringTheWait_DoNotEndIt) {
    struct sigaction counting {};
    counting.sa_handler = [](int) {};
    sigaction(SIGALRM, &counting, nullptr);
    const itimerval often{{0, 1000}, {0, 1000}};
    setitimer(ITIMER_REAL, &often, nullptr);
    std::atomic<bool> answerNow{false};
    Peer peer({[&answerNow](int connection) {
        const FrameHeader late = receiveHeader(connection);
        const FrameHeader next = receiveHeader(connection);
        while (!answerNow)
            std::this_thread::yield();
        sendRaw(connection, reply(late.id, "late"));
        sendRaw(connection, reply(next.id, "answer"));
        waitForMore(connection);
    }});
    EXPECT_EQ(send(12), errAETimeout);
    expectTicks(12);
    answerNow = true;
    EXPECT_EQ(send(), noErr);
    EXPECT_EQ(textOf(reply_), "answer");
    const itimerval never{};
    setitimer(ITIMER_REAL, &never, nullptr);
    EXPECT_EQ(send(0, kAENoReply), noErr);
}

TEST_F(EventConnectionTest, PeerThatReadsNothing_FullSocket_TimesOutAtTheTick) {
    std::atomic<bool> stop{false};
    Peer peer({[&stop](int) {
        while (!stop)
            std::this_thread::yield();
    }});
    OSStatus status = noErr;
    for (int i = 0; i < 1000 && status == noErr; ++i)
        status = send(12, kAENoReply, std::string(15000, 'x'));
    EXPECT_EQ(status, errAETimeout);
    expectTicks(12);
    EXPECT_EQ(send(6), errAETimeout);
    expectTicks(6);
    stop = true;
}

TEST_F(EventConnectionTest, FullSocketThatIsReadAgain_LosesNothing) {
    std::atomic<bool> start{false};
    std::atomic<int> received{0};
    constexpr int kCount = 100;
    Peer peer({[&](int connection) {
        while (!start)
            std::this_thread::yield();
        while (received < kCount && receiveHeader(connection).magic != 0)
            ++received;
    }});
    int sent = 0;
    while (send(1, kAENoReply, std::string(15000, 'x')) == noErr)
        ++sent;
    start = true;
    for (; sent < kCount; ++sent)
        ASSERT_EQ(send(kNoTimeOut, kAENoReply, std::string(15000, 'x')), noErr);
    while (received < kCount)
        std::this_thread::yield();
    EXPECT_EQ(received, kCount);
}

TEST_F(EventConnectionTest, KeptConnection_IsUsedForTheNextSend) {
    Peer peer({[](int connection) {
        for (int i = 0; i < 3; ++i)
            sendRaw(connection, reply(receiveHeader(connection).id, std::to_string(i)));
        waitForMore(connection);
    }});
    for (int i = 0; i < 3; ++i) {
        ASSERT_EQ(send(), noErr);
        EXPECT_EQ(textOf(reply_), std::to_string(i));
    }
    EXPECT_EQ(send(0, kAENoReply), noErr);
}

TEST_F(EventConnectionTest, KeptConnectionThatBroke_IsReplacedOnceAndUnseen) {
    std::atomic<bool> closed{false};
    Peer peer({[](int connection) { sendRaw(connection, reply(receiveHeader(connection).id, "one")); },
               [&closed](int connection) {
                   closed = true;
                   sendRaw(connection, reply(receiveHeader(connection).id, "two"));
               }});
    ASSERT_EQ(send(), noErr);
    ASSERT_EQ(send(), noErr) << "the peer had closed the first connection";
    EXPECT_EQ(textOf(reply_), "two");
}

TEST_F(EventConnectionTest, KeptConnectionThatBroke_AndNobodyThere_IsProcNotFound) {
    {
        Peer peer({[](int connection) { sendRaw(connection, reply(receiveHeader(connection).id, "one")); }});
        ASSERT_EQ(send(), noErr);
    }
    EXPECT_EQ(send(), procNotFound);
    EXPECT_EQ(send(100, kAENoReply), procNotFound);
}

TEST_F(EventConnectionTest, RequestInTheMailboxThatWasNeverTaken_IsSentAgainToTheNextPeer) {
    // The first peer says that it looks into the mailbox, and goes away without having looked.
    const auto lookAndLeave = [](int connection) {
        FrameBuffer buffer;
        ReceivedFrame frame;
        EventChannel channel{FileDescriptor(dup(connection))};
        for (int exchanges = 0; exchanges < 2;) {
            if (channel.receive(buffer, frame) != EventChannel::Received::frame) {
                std::this_thread::yield();
                continue;
            }
            channel.setLooking(++exchanges == 2);
            sendRaw(connection, reply(frame.header.id, "one"));
        }
        // What comes through the socket now is nothing but the end.
        pollfd waited{connection, POLLIN, 0};
        poll(&waited, 1, 200);
        EXPECT_EQ(waited.revents & POLLIN, 0) << "the request went to the mailbox";
    };
    Peer peer({lookAndLeave,
               [](int connection) { sendRaw(connection, reply(receiveHeader(connection).id, "two")); }});
    ASSERT_EQ(send(), noErr);
    ASSERT_EQ(send(), noErr);
    ASSERT_EQ(send(), noErr);
    EXPECT_EQ(textOf(reply_), "two");
}

TEST_F(EventConnectionTest, RequestInTheMailboxThatWasTaken_IsConnectionInvalid) {
    const auto takeAndLeave = [](int connection) {
        FrameBuffer buffer;
        ReceivedFrame frame;
        EventChannel channel{FileDescriptor(dup(connection))};
        for (int exchanges = 0; exchanges < 3;) {
            if (channel.receive(buffer, frame) != EventChannel::Received::frame) {
                std::this_thread::yield();
                continue;
            }
            if (++exchanges == 3) return;
            channel.setLooking(exchanges == 2);
            sendRaw(connection, reply(frame.header.id, "one"));
        }
    };
    Peer peer({takeAndLeave});
    ASSERT_EQ(send(), noErr);
    ASSERT_EQ(send(), noErr);
    EXPECT_EQ(send(), connectionInvalid);
}

TEST_F(EventConnectionTest, ManyThreads_EachKeepTheirOwnAnswers) {
    constexpr int kThreads = 8;
    const auto echoIds = [](int connection) {
        std::thread([connection = dup(connection)] {
            for (;;) {
                const FrameHeader header = receiveHeader(connection);
                if (header.magic == 0) break;
                if (!sendRaw(connection, reply(header.id, std::to_string(header.timeOutInTicks)))) break;
            }
            close(connection);
        }).detach();
    };
    std::vector<std::thread> threads;
    std::atomic<int> wrong{0};
    {
        Peer peer(std::vector<Peer::Play>(kThreads, echoIds));
        for (int t = 0; t < kThreads; ++t) {
            threads.emplace_back([this, t, &wrong] {
                FileDescriptor socket;
                connectToEndpoint(kCode, Deadline::never(), socket);
                EventConnection connection(std::move(socket));
                Descriptor event = makeEvent(address_, kEcho);
                for (int i = 0; i < 200; ++i) {
                    const SInt32 ticks = t * 1000 + i;
                    const EventRequest request{DescriptorStorage::eventOf(event.get())->image(), kAEWaitReply,
                                               ticks, Deadline::never(), nullptr};
                    EventReply received;
                    if (connection.exchange(request, received) != EventConnection::Outcome::done) ++wrong;
                    EventValue value;
                    if (received.event == nullptr ||
                        !received.event->find(ItemKind::parameter, keyDirectObject, value) ||
                        std::string(reinterpret_cast<const char*>(value.data), value.size) !=
                            std::to_string(ticks)) {
                        ++wrong;
                    }
                }
            });
        }
        for (std::thread& thread : threads)
            thread.join();
    }
    EXPECT_EQ(wrong, 0);
}
