// The C++ classes of dovrel/pos.hpp, against a real server.
#include "dovrel/pos.hpp"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include "tests/support/HeapWatch.h"
#include "tests/support/ServerSettings.h"
#include "tests/support/TestRoot.h"

namespace {

constexpr pos::Identifier kCounter = pos::makeIdentifier("Counter");
constexpr pos::Identifier kDigest = pos::makeIdentifier("Digest");
constexpr pos::Identifier kEcho = pos::makeIdentifier("Echo");

template <typename Type>
constexpr bool kIsMoveOnly =
    !std::is_copy_constructible_v<Type> && !std::is_copy_assignable_v<Type> &&
    std::is_nothrow_move_constructible_v<Type> && std::is_nothrow_move_assignable_v<Type>;
static_assert(kIsMoveOnly<pos::Session> && kIsMoveOnly<pos::Application> && kIsMoveOnly<pos::Object> &&
              kIsMoveOnly<pos::Bytes>);

template <typename Operation>
std::string failureOf(const Operation& operation) {
    try {
        operation();
    } catch (const pos::Failure& failure) {
        return failure.what();
    }
    return "";
}

class PosHpp : public testing::Test {
  protected:
    // The numbers of applications and of objects in the server.
    static unsigned applicationCount(const pos::Application& application) {
        return number(application.information(std::array<char, 2>{3, 0}));
    }
    static unsigned objectCount(const pos::Application& application) {
        return number(application.information(std::array<char, 2>{4, 0}));
    }

    static unsigned number(const pos::Bytes& bytes) {
        EXPECT_EQ(bytes.size(), 4u);
        return bytes.empty() ? 0u : bytes.data()[0];
    }

    pos::Application registerDigest(std::initializer_list<std::uint16_t> options = {}) const {
        return pos::Application(*session_, "pos.hpp", {kDigest, kEcho, kCounter}, options);
    }

    const dovrel::test::TestRoot root_;
    std::optional<pos::Session> session_{std::in_place};
};

}  // namespace

TEST_F(PosHpp, Call_ReturnsTheServersResult) {
    pos::Application application = registerDigest();
    pos::Object digest = application.create(kDigest);
    EXPECT_EQ(digest.call("md5", "abc").text(), "900150983cd24fb0d6963f7d28e17f72");
    EXPECT_EQ(digest.call("md5").text(), "d41d8cd98f00b204e9800998ecf8427e");
}

TEST_F(PosHpp, Views_OfEveryKindOfBytes_SendTheseBytes) {
    pos::Application application = registerDigest();
    pos::Object echo = application.create(kEcho);
    const std::string text("a\0b", 3);
    EXPECT_EQ(echo.call("echo", text).text(), text);
    EXPECT_EQ(echo.call("echo", std::string_view(text)).text(), text);
    EXPECT_EQ(echo.call("echo", std::vector<std::uint8_t>{'x', 'y'}).text(), "xy");
    EXPECT_EQ(echo.call("echo", std::array<char, 2>{'x', 'z'}).text(), "xz");
    EXPECT_EQ(echo.call("echo", pos::View(text.data(), 1)).text(), "a");
    EXPECT_EQ(echo.call("echo", echo.call("echo", "twice")).text(), "twice");
}

TEST_F(PosHpp, Call_OnAnExecuter_ReturnsTheServersResult) {
    pos::Application application = registerDigest();
    pos::Object echo = application.create(kEcho);
    EXPECT_EQ(echo.call(pos::makeIdentifier("executer"), "echo", "there").text(), "there");
}

TEST_F(PosHpp, Run_AndInformation_ReturnTheServersResults) {
    pos::Application application = registerDigest();
    EXPECT_EQ(application.run("ping", "data").text(), "data");
    EXPECT_EQ(application.information(std::array<char, 2>{1, 0}).text(), application.run("version").text());
    EXPECT_EQ(session_->interfaceVersion(), 7u);
    EXPECT_EQ(number(session_->information(std::array<char, 2>{0x60, 0x01})), 7u);
    EXPECT_EQ(session_->information(std::array<char, 2>{1, 0}).text(), application.run("version").text());
}

TEST_F(PosHpp, Failures_AreThrownWithTheCallThatFailed) {
    pos::Application application = registerDigest();
    pos::Object digest = application.create(kDigest);
    EXPECT_EQ(failureOf([&] { digest.call("no such method"); }), "posCallMethod failed");
    EXPECT_EQ(failureOf([&] { application.create(pos::makeIdentifier("None")); }),
              "posInstantiateObject failed");
    EXPECT_EQ(failureOf([&] { application.run("no such command"); }), "posExecuteCMD failed");
    EXPECT_EQ(failureOf([&] { application.information(""); }), "posGetInfo failed");
    digest.destroy();
    application.unregister();
    EXPECT_EQ(failureOf([&] { application.unregister(); }), "posUnregisterApplication failed");
    root_.endServers(SIGTERM);
    root_.removeServer();
    EXPECT_EQ(failureOf([&] { registerDigest(); }), "posRegisterApplicationWithClasses failed");
}

TEST_F(PosHpp, Options_ReachTheLibrary) {
    root_.configure(dovrel::test::refusal("register application", 32));
    const auto shownBy = [this](std::initializer_list<std::uint16_t> options) {
        testing::internal::CaptureStderr();
        EXPECT_EQ(failureOf([&] { registerDigest(options); }), "posRegisterApplicationWithClasses failed");
        return testing::internal::GetCapturedStderr();
    };
    EXPECT_NE(shownBy({POS_OPTION_SILENT_MESSAGES}), "");
    EXPECT_EQ(shownBy({POS_OPTION_SILENT_MESSAGES, POS_OPTION_SILENT_REGISTRATION}), "");
}

TEST_F(PosHpp, Object_AtTheEndOfItsLife_IsDeletedInTheServer) {
    pos::Application application = registerDigest();
    {
        const pos::Object digest = application.create(kDigest);
        EXPECT_EQ(objectCount(application), 1u);
    }
    EXPECT_EQ(objectCount(application), 0u);
}

TEST_F(PosHpp, Object_ThatIsMovedOrAssigned_IsDeletedOnce) {
    pos::Application application = registerDigest();
    pos::Object digest = application.create(kDigest);
    pos::Object moved = std::move(digest);
    EXPECT_EQ(objectCount(application), 1u);
    moved = application.create(kEcho);
    EXPECT_EQ(objectCount(application), 1u);
    EXPECT_EQ(moved.call("echo", "x").text(), "x");
    moved.destroy();
    EXPECT_EQ(objectCount(application), 0u);
}

TEST_F(PosHpp, Object_ThatIsForgotten_StaysInTheServer) {
    pos::Application application = registerDigest();
    application.create(kDigest).forget();
    EXPECT_EQ(objectCount(application), 1u);
}

TEST_F(PosHpp, Application_AtTheEndOfItsLife_IsUnregistered) {
    const pos::Application observer(*session_, "observer");
    {
        pos::Application application = registerDigest();
        const pos::Application moved = std::move(application);
        EXPECT_EQ(applicationCount(observer), 2u);
    }
    EXPECT_EQ(applicationCount(observer), 1u);
    pos::Application assigned = registerDigest();
    assigned = registerDigest();
    EXPECT_EQ(applicationCount(observer), 2u);
    assigned.unregister();
    EXPECT_EQ(applicationCount(observer), 1u);
    registerDigest().forget();
    EXPECT_EQ(applicationCount(observer), 2u);
}

TEST_F(PosHpp, Application_WithClassesByPointers_IsRegistered) {
    pos::Identifier classes[] = {kEcho, kCounter};
    void* pointers[] = {classes[0].data(), classes[1].data()};
    pos::Application application(*session_, "pos.hpp", pointers, 2);
    EXPECT_EQ(application.create(kEcho).call("echo", "x").text(), "x");
}

TEST_F(PosHpp, Session_ThatIsMoved_IsClosedOnce) {
    pos::Session moved = std::move(*session_);
    session_.reset();
    EXPECT_EQ(moved.interfaceVersion(), 7u);
}

TEST_F(PosHpp, Session_AssignedToTheOpenOne_StaysOpen) {
    *session_ = pos::Session();
    EXPECT_EQ(session_->interfaceVersion(), 7u);
    pos::Session other = std::move(*session_);
    *session_ = std::move(other);
    EXPECT_EQ(session_->interfaceVersion(), 7u);
}

TEST_F(PosHpp, View_OfANullText_HasNoBytes) {
    const char* const none = nullptr;
    EXPECT_EQ(pos::View(none).size(), 0u);
}

TEST_F(PosHpp, Session_InAForkedProcess_IsAFailure) {
    const pid_t child = fork();
    if (child == 0) _exit(failureOf([] { pos::Session(); }) == "InitializePOS failed" ? 0 : 1);
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
}

TEST_F(PosHpp, Bytes_ThatAreMoved_AreThere) {
    pos::Application application = registerDigest();
    pos::Bytes bytes = application.run("ping", "data");
    const pos::Bytes moved = std::move(bytes);
    EXPECT_TRUE(bytes.empty());  // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(bytes.begin(), bytes.end());
    EXPECT_EQ(std::string(moved.begin(), moved.end()), "data");
    EXPECT_TRUE(application.run("ping").empty());
}

TEST_F(PosHpp, EveryOperation_AllocatesNoMoreThanTheCallsInC) {
    const auto inC = [] {
        dovrel::test::HeapWatch watch;
        pos::Identifier identifier = kEcho;
        void* classes[] = {identifier.data()};
        uint32_t application = 0;
        void* object = nullptr;
        uint8_t* result = nullptr;
        uint32_t size = 0;
        char command[] = "ping";
        void* commandBytes = command;
        void* none = nullptr;
        posRegisterApplicationWithClasses("same", classes, 1, nullptr, 0, &application);
        posInstantiateObject(application, classes, &object);
        posCallMethod(application, &object, "echo", reinterpret_cast<uint8_t*>(command), 4, &result, &size);
        posDeleteDLLHeapData(result);
        posExecuteCMD(application, &commandBytes, 4, &none, 0, &result, &size);
        posDeleteDLLHeapData(result);
        posDeleteObject(application, &object);
        posFreeDllHeapData(object);
        posUnregisterApplication(application);
        return watch.requests().size();
    };
    const auto inCpp = [this] {
        dovrel::test::HeapWatch watch;
        {
            pos::Application application(*session_, "same", {kEcho});
            pos::Object object = application.create(kEcho);
            object.call("echo", "ping");
            application.run("ping");
        }
        return watch.requests().size();
    };
    // Keeps the server connected, and lets the first exchange allocate what stays.
    const pos::Application observer(*session_, "observer");
    inC();
    const size_t allowed = inC();
    EXPECT_EQ(inCpp(), allowed);
}

TEST(PosView, Size_BeyondThirtyTwoBits_IsAFailure) {
    EXPECT_EQ(pos::View("", std::size_t{UINT32_MAX}).size(), UINT32_MAX);
    if constexpr (sizeof(std::size_t) > 4) {
        EXPECT_EQ(failureOf([] { pos::View("", std::size_t{UINT32_MAX} + 1).size(); }),
                  "more than 4 GiB to send");
    }
}

TEST(PosIdentifier, MakeIdentifier_PadsWithZeroBytesAndRefusesLongNames) {
    static_assert(kEcho[0] == 'E' && kEcho[3] == 'o' && kEcho[4] == 0 && kEcho[15] == 0);
    EXPECT_EQ(pos::makeIdentifier("0123456789abcdef")[15], 'f');
    EXPECT_EQ(failureOf([] { pos::makeIdentifier("0123456789abcdefg"); }),
              "an identifier has at most 16 bytes");
}
