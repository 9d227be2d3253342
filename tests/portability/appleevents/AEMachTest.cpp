// Contract tests of sending events to another process.
#include <CoreServices/CoreServices.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "AESendMessageTest.h"
#include "Events.h"

TEST_F(AESendMessageTest, ApplicationNotRunning_IsProcNotFound_AndTheReplyIsNull) {
    reply_.desc.descriptorType = 0x5A5A5A5A;
    Descriptor event = makeEvent(address_, kEcho);
    EXPECT_EQ(AESendMessage(event.get(), reply_.get(), kAEWaitReply, kAEDefaultTimeout), procNotFound);
    EXPECT_EQ(reply_.desc.descriptorType, DescType{typeNull});
    EXPECT_TRUE(reply_.desc.dataHandle == nullptr);
}

TEST_F(AESendMessageTest, ApplicationNotRunning_WithoutReply_IsProcNotFound) {
    Descriptor event = makeEvent(address_, kEcho);
    EXPECT_EQ(AESendMessage(event.get(), nullptr, kAENoReply, 100), procNotFound);
}

TEST_F(AESendMessageTest, Answer_ComesBackByteForByte) {
    ASSERT_TRUE(application_.start());
    std::string bytes;
    for (int i = 0; i < 256; ++i)
        bytes += static_cast<char>(255 - i);
    ASSERT_EQ(send(kEcho, bytes), noErr);
    EXPECT_EQ(toText(reply_), bytes);
    EXPECT_EQ(parseNumber(reply_, keyErrorNumber), -99999) << "no error number after a success";
}

TEST_F(AESendMessageTest, Answer_OfAnySize_IsWhole) {
    ASSERT_TRUE(application_.start());
    // Sizes around which a transport might change its method.
    for (const size_t size : {0,     1,     7,     8,     9,     4095,    4096,          4097,
                              16200, 16384, 16400, 65535, 65536, 1 << 20, (1 << 20) + 1, 5 << 20,
                              1,     70000, 3,     70000}) {
        std::string bytes(size, 'x');
        for (size_t i = 0; i < size; i += 97)
            bytes[i] = static_cast<char>(i * 31 + size);
        ASSERT_EQ(send(kEcho, bytes), noErr);
        EXPECT_TRUE(toText(reply_) == bytes) << size;
    }
}

TEST_F(AESendMessageTest, Answers_CanBeKept_WhileOthersArrive) {
    ASSERT_TRUE(application_.start());
    std::vector<Descriptor> replies(12);
    const auto toBytes = [](size_t i) { return std::string(100000 + i, static_cast<char>('a' + i)); };
    for (size_t i = 0; i < replies.size(); ++i) {
        Descriptor event = makeEvent(address_, kEcho);
        putText(event, toBytes(i));
        ASSERT_EQ(AESendMessage(event.get(), replies[i].get(), kAEWaitReply, kAEDefaultTimeout), noErr);
    }
    for (size_t i = 0; i < replies.size(); ++i)
        EXPECT_TRUE(toText(replies[i]) == toBytes(i)) << i;
}

TEST_F(AESendMessageTest, Answers_OutliveTheApplication) {
    ASSERT_TRUE(application_.start());
    ASSERT_EQ(send(kEcho, std::string(200000, 'q')), noErr);
    application_.kill();
    EXPECT_TRUE(toText(reply_) == std::string(200000, 'q'));
}

TEST_F(AESendMessageTest, Event_CanBeSentAgainAndChangedInBetween) {
    ASSERT_TRUE(application_.start());
    Descriptor event = makeEvent(address_, kEcho);
    for (const std::string& text :
         {std::string("first"), std::string(100000, 's'), std::string(100000, 't')}) {
        putText(event, text);
        for (int i = 0; i < 2; ++i) {
            Descriptor reply;
            ASSERT_EQ(AESendMessage(event.get(), reply.get(), kAEWaitReply, kAEDefaultTimeout), noErr);
            EXPECT_TRUE(toText(reply) == text);
        }
    }
}

TEST_F(AESendMessageTest, Address_OfMoreThanFourBytes_IsTheTextOfTheSignature) {
    ASSERT_TRUE(application_.start());
    const char bytes[8] = {'T', 'e', 'S', 't', 0, 'a', 'b', 'c'};
    Descriptor address;
    ASSERT_EQ(AECreateDesc(typeApplSignature, bytes, 8, address.get()), noErr);
    Descriptor event = makeEvent(address, kEcho);
    putText(event, "to the first four");
    EXPECT_EQ(AESendMessage(event.get(), reply_.get(), kAEWaitReply, kAEDefaultTimeout), noErr);
    EXPECT_EQ(toText(reply_), "to the first four");
}

TEST_F(AESendMessageTest, Address_OfAnotherSignature_IsNotThisApplication) {
    ASSERT_TRUE(application_.start());
    Descriptor event = makeEvent(makeAddress("tEsT"), kEcho);
    EXPECT_EQ(AESendMessage(event.get(), reply_.get(), kAEWaitReply, kAEDefaultTimeout), procNotFound);
}

TEST_F(AESendMessageTest, NoHandler_IsTheResultOfTheSend) {
    ASSERT_TRUE(application_.start());
    EXPECT_EQ(send(kNobody), errAEEventNotHandled);
    EXPECT_EQ(send(kDecline), errAEEventNotHandled);
}

TEST_F(AESendMessageTest, HandlerFails_SendSucceedsAndTheNumberIsInTheReply) {
    ASSERT_TRUE(application_.start());
    ASSERT_EQ(sendNumber(kFail, -12345), noErr);
    EXPECT_EQ(parseNumber(reply_, keyErrorNumber), -12345);
    EXPECT_EQ(toText(reply_, 'part'), "kept") << "what the handler had put stays";
    DescType type = 0;
    Size size = 0;
    EXPECT_EQ(AESizeOfParam(reply_.get(), keyErrorNumber, &type, &size), noErr);
    EXPECT_EQ(type, DescType{typeSInt32});
    EXPECT_EQ(size, 4);
}

TEST_F(AESendMessageTest, HandlerFails_WithAText_BothAreInTheReply) {
    ASSERT_TRUE(application_.start());
    ASSERT_EQ(sendNumber(kFailWithText, -5), noErr);
    EXPECT_EQ(parseNumber(reply_, keyErrorNumber), -5);
    EXPECT_EQ(toText(reply_, keyErrorString), "no luck");
}

TEST_F(AESendMessageTest, HandlerThrows_IsAFailureAndTheApplicationLivesOn) {
    ASSERT_TRUE(application_.start());
    ASSERT_EQ(send(kThrow), noErr);
    EXPECT_EQ(parseNumber(reply_, keyErrorNumber), errAEEventFailed);
    EXPECT_EQ(send(kEcho, "still here"), noErr);
    EXPECT_EQ(toText(reply_), "still here");
}

TEST_F(AESendMessageTest, EmptyDirectParameter_DiffersFromNone) {
    ASSERT_TRUE(application_.start());
    ASSERT_EQ(send(kAnswerEmpty), noErr);
    EXPECT_EQ(toText(reply_), "");
    ASSERT_EQ(send(kAnswerNothing), noErr);
    EXPECT_EQ(toText(reply_), "(error -1701)");
}

TEST_F(AESendMessageTest, WithoutReply_HandlerGetsANullReply) {
    ASSERT_TRUE(application_.start());
    Descriptor event = makeEvent(address_, kReport);
    EXPECT_EQ(AESendMessage(event.get(), reply_.get(), kAENoReply, 100), noErr);
    EXPECT_EQ(reply_.desc.descriptorType, DescType{typeNull});
    EXPECT_EQ(application_.nextReport(), 'n');
    EXPECT_EQ(send(kReport), noErr);
    EXPECT_EQ(application_.nextReport(), 'e');
}

TEST_F(AESendMessageTest, WithoutReply_LargeEventsArriveInOrder) {
    ASSERT_TRUE(application_.start());
    for (int i = 0; i < 5; ++i) {
        Descriptor event = makeEvent(address_, kCount);
        putText(event, std::string(300000, 'x'));
        ASSERT_EQ(AESendMessage(event.get(), nullptr, kAENoReply, 600), noErr);
    }
    ASSERT_EQ(send(kCount), noErr);
    EXPECT_EQ(parseNumber(reply_, keyDirectObject), 6);
}

TEST_F(AESendMessageTest, ReplyNotWantedButWaitedFor_NullPointer_IsAllowed) {
    ASSERT_TRUE(application_.start());
    Descriptor event = makeEvent(address_, kCount);
    EXPECT_EQ(AESendMessage(event.get(), nullptr, kAEWaitReply, kAEDefaultTimeout), noErr);
    ASSERT_EQ(send(kCount), noErr);
    EXPECT_EQ(parseNumber(reply_, keyDirectObject), 2);
}

TEST_F(AESendMessageTest, SeveralThreads_EachGetTheirAnswers) {
    ASSERT_TRUE(application_.start());
    std::vector<std::thread> threads;
    std::vector<int> wrong(8, 0);
    for (size_t t = 0; t < wrong.size(); ++t) {
        threads.emplace_back([this, t, &wrong] {
            for (int i = 0; i < 100; ++i) {
                const size_t size = i % 10 == 0 ? 50000 : 20;
                const std::string text = std::to_string(t) + ":" + std::to_string(i) + std::string(size, '.');
                Descriptor event = makeEvent(address_, kEcho);
                putText(event, text);
                Descriptor reply;
                const OSStatus status =
                    AESendMessage(event.get(), reply.get(), kAEWaitReply, kAEDefaultTimeout);
                if (status != noErr || toText(reply) != text) ++wrong[t];
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(wrong, std::vector<int>(8, 0));
}

TEST_F(AESendMessageTest, ForkedProcess_HasItsOwnAnswers) {
    ASSERT_TRUE(application_.start());
    ASSERT_EQ(send(kEcho, "before"), noErr);
    ASSERT_EQ(send(kEcho, std::string(100000, 'b')), noErr);
    const pid_t child = fork();
    const std::string name = child == 0 ? "child " : "parent ";
    int wrong = 0;
    for (int i = 0; i < 200; ++i) {
        const std::string text = name + std::to_string(i) + std::string(i % 20 == 0 ? 100000 : 0, name[0]);
        if (send(kEcho, text) != noErr || toText(reply_) != text) ++wrong;
    }
    if (child == 0) _exit(wrong == 0 ? 0 : 1);
    EXPECT_EQ(wrong, 0);
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
}

TEST_F(AESendMessageTest, Handler_SeesTheAttributesOfTheEvent) {
    ASSERT_TRUE(application_.start());
    Descriptor event;
    AECreateAppleEvent(kTestClass, kAttributes, address_.get(), 777, 888, event.get());
    ASSERT_EQ(AESendMessage(event.get(), reply_.get(), kAEWaitReply, kAEDefaultTimeout), noErr);
    EXPECT_EQ(parseNumber(reply_, keyReturnIDAttr), 777);
    EXPECT_EQ(parseNumber(reply_, keyTransactionIDAttr), 888);
    OSType code = 0;
    AEGetParamPtr(reply_.get(), keyEventClassAttr, typeType, nullptr, &code, sizeof code, nullptr);
    EXPECT_EQ(code, OSType{kTestClass});
    AEGetParamPtr(reply_.get(), keyEventIDAttr, typeType, nullptr, &code, sizeof code, nullptr);
    EXPECT_EQ(code, OSType{kAttributes});
    EXPECT_EQ(parseNumber(reply_, keyEventSourceAttr), kAELocalProcess);
    EXPECT_EQ(parseNumber(reply_, keySenderPIDAttr), getpid());
}

TEST_F(AESendMessageTest, Handler_LearnsWhetherAllParametersWereRead) {
    ASSERT_TRUE(application_.start());
    ASSERT_EQ(send(kMissed, "unread"), noErr);
    EXPECT_EQ(parseNumber(reply_, 'befo'), noErr) << "a parameter is unread";
    EXPECT_EQ(parseNumber(reply_, 'aftr'), errAEDescNotFound) << "all parameters are read";
}

TEST_F(AESendMessageTest, Quit_EndsTheEventLoop) {
    ASSERT_TRUE(application_.start());
    Descriptor event = makeEvent(address_, kAEQuitApplication, kCoreEventClass);
    EXPECT_EQ(AESendMessage(event.get(), nullptr, kAENoReply, 100), noErr);
    EXPECT_EQ(application_.waitForEnd(), 0);
    EXPECT_EQ(AESendMessage(event.get(), nullptr, kAENoReply, 100), procNotFound);
}

TEST_F(AESendMessageTest, Quit_IsAnsweredBeforeTheLoopEnds) {
    ASSERT_TRUE(application_.start());
    Descriptor event = makeEvent(address_, kAEQuitApplication, kCoreEventClass);
    EXPECT_EQ(AESendMessage(event.get(), reply_.get(), kAEWaitReply, kAEDefaultTimeout), noErr);
    EXPECT_EQ(application_.waitForEnd(), 0);
}

TEST_F(AESendMessageTest, UnknownModeOfReply_IsRefused) {
    Descriptor event = makeEvent(address_, kEcho);
    EXPECT_EQ(AESendMessage(event.get(), reply_.get(), 0, 100), errAEUnknownSendMode);
}

TEST_F(AESendMessageTest, NullEvent_IsAnError) {
    const Descriptor null;
    EXPECT_NE(AESendMessage(null.get(), reply_.get(), kAEWaitReply, 100), noErr);
}

TEST_F(AESendMessageTest, Errno_IsKept) {
    Descriptor event = makeEvent(address_, kEcho);
    errno = 12345;
    EXPECT_EQ(AESendMessage(event.get(), reply_.get(), kAEWaitReply, 100), procNotFound);
    EXPECT_EQ(errno, 12345);
    ASSERT_TRUE(application_.start());
    errno = 12345;
    EXPECT_EQ(AESendMessage(event.get(), reply_.get(), kAENoReply, 100), noErr);
    EXPECT_EQ(errno, 12345);
}
