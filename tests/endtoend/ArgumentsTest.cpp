// How the operations treat their arguments: the cases that only a real server shows.
#include <cstring>

#include "tests/endtoend/EndToEnd.h"

namespace dovrel::test {
namespace {

constexpr char kNullPointer[] = "DLL_POS_ACCESS_CLIENT_EXCEPTION_CPP_A_NULL_POINTER_HAS_BEEN_PASSED";
constexpr char kClassNotRegistered[] = "DLL_POS_ACCESS_CLIENT_EXCEPTION_CLASS_NOT_REGISTERED";
constexpr char kUnrecoverable[] = "DLL_ERROR_UNRECOVERABLE_ERROR";

class Arguments : public InSession {
  protected:
    Arguments() { root_.configure(setting("log", 1)); }
};

TEST_F(Arguments, CallMethod_WithANullMethodName_FailsWithTheNullPointerText) {
    const uint32_t application = host_.registered({"Echo"});
    ObjectId echo = host_.instantiate(application, "Echo");
    Console console;
    EXPECT_EQ(host_.call(application, echo, nullptr).status, POS_FAILURE);
    console.stop();
    EXPECT_EQ(countFailures(console, texts_.text(kNullPointer), kUnrecoverable), 1u);
    EXPECT_EQ(countInServerLog(" call method"), 0u);
}

TEST_F(Arguments, InstantiateObject_OfAClassThatWasNotRegistered_FailsWhereTheServerAskedForTheCheck) {
    root_.configure(setting("log", 1) + setting("checkClasses", 1));
    const uint32_t application = host_.registered({"Counter"});
    EXPECT_TRUE(host_.instantiate(application, "Counter").isThere());
    Console console;
    EXPECT_FALSE(host_.instantiate(application, "Echo").isThere());
    console.stop();
    EXPECT_EQ(countFailures(console, texts_.text(kClassNotRegistered), kUnrecoverable), 1u);
    EXPECT_EQ(countInServerLog(" instantiate object"), 1u);
}

TEST_F(Arguments, InstantiateObject_OfAClassThatWasNotRegistered_IsTheServersBusinessWithoutTheCheck) {
    EXPECT_TRUE(host_.instantiate(host_.registered({"Counter"}), "Echo").isThere());
}

TEST_F(Arguments, InstantiateObjectOnExecuter_WithAnyExecuter_BehavesAsInstantiateObject) {
    const uint32_t application = host_.registered({"Echo"});
    char identifier[POS_IDENTIFIER_SIZE] = "Echo";
    char executer[POS_IDENTIFIER_SIZE] = "an executer";
    void* classId = identifier;
    void* executerId = executer;
    void* null = nullptr;
    for (void** handle : {&executerId, &null, static_cast<void**>(nullptr)}) {
        void* object = nullptr;
        EXPECT_EQ(library_.posInstantiateObjectOnExecuter(application, handle, &classId, &object), POS_OK);
        library_.posFreeDllHeapData(object);
    }
    EXPECT_EQ(countInServerLog("117 executer word = 4294967295\n"), 3u);
    EXPECT_EQ(countInServerLog("an executer"), 0u);
}

TEST_F(Arguments, CallMethodOnExecuter_NamesTheExecuterAndCallMethodNamesNone) {
    const uint32_t application = host_.registered({"Echo"});
    ObjectId echo = host_.instantiate(application, "Echo");
    EXPECT_EQ(host_.call(application, echo, "echo").status, POS_OK);
    EXPECT_EQ(countInServerLog("104 executer identifier = 0 bytes\n"), 1u);

    char executer[POS_IDENTIFIER_SIZE] = "an executer";
    void* executerId = executer;
    uint8_t argument[] = {'h', 'i'};
    uint8_t* result = nullptr;
    uint32_t length = 0;
    EXPECT_EQ(library_.posCallMethodOnExecuter(application, &executerId, echo.handle(), "echo", argument, 2,
                                               &result, &length),
              POS_OK);
    ASSERT_EQ(length, 2u);
    EXPECT_EQ(std::memcmp(result, argument, 2), 0);
    library_.posDeleteDLLHeapData(result);
    EXPECT_EQ(countInServerLog("104 executer identifier = 16 bytes: 61 6E 20 65 78 65 63 75 74 65 72"), 1u);
}

TEST_F(Arguments, GetInfo_OfTheRequest352_IsAnsweredWithoutAServerAndBeforeAnyRegistration) {
    const Answered answered = host_.information(4711, std::string("\x60\x01", 2));
    EXPECT_EQ(answered.status, POS_OK);
    EXPECT_EQ(answered.bytes, littleEndian(7));
    EXPECT_EQ(root_.servers().size(), 0u);
}

TEST_F(Arguments, GetInfo_BeforeAnyRegistration_ConnectsAndIsAnswered) {
    EXPECT_EQ(host_.information(4711, std::string("\x03\x00", 2)).bytes, littleEndian(0));
    EXPECT_EQ(root_.servers().size(), 1u);
    EXPECT_EQ(countInServerLog(" query interface version"), 0u);
}

TEST_F(Arguments, GetInfo_ThatFails_LeavesNoInformation) {
    uint8_t byte = 0;
    uint8_t* info = &byte;
    int32_t length = 1;
    Console console;
    EXPECT_EQ(library_.posGetInfo(1, "?", 1, &info, &length), POS_FAILURE);
    console.stop();
    EXPECT_EQ(info, nullptr);
    EXPECT_EQ(length, 0);
    EXPECT_EQ(countAlerts(console, texts_.failureBody("Unknown Application", "there is no such information",
                                                      kUnrecoverable)),
              1u);
}

TEST_F(Arguments, ExecuteCMD_OfAnUnregisteredApplication_FailsAndShowsNothing) {
    Console console;
    EXPECT_EQ(host_.command(4711, "ping").status, POS_FAILURE);
    console.stop();
    EXPECT_EQ(alerts(console), 0u);
    EXPECT_EQ(root_.servers().size(), 0u);
}

TEST_F(Arguments, ObjectOperations_OfAnUnregisteredApplication_FailAndShowNothing) {
    const uint32_t application = host_.registered({"Echo"});
    ObjectId echo = host_.instantiate(application, "Echo");
    const uint32_t unknown = application + 1;
    Console console;
    EXPECT_FALSE(host_.instantiate(unknown, "Echo").isThere());
    EXPECT_EQ(host_.call(unknown, echo, "echo").status, POS_FAILURE);
    EXPECT_EQ(library_.posDeleteObject(unknown, echo.handle()), POS_FAILURE);
    console.stop();
    EXPECT_EQ(alerts(console), 0u);
}

TEST_F(Arguments, Register_SendsNameClassesAndOptionsAsTheyAre) {
    uint32_t application = 0;
    EXPECT_EQ(host_.registerApplication(application, {"Echo"}, {1104, 9}, "A name"), POS_OK);
    EXPECT_EQ(countInServerLog("100 application name = \"A name\"\n"), 1u);
    EXPECT_EQ(countInServerLog("114 options = 4 bytes: 50 04 09 00"), 1u);
    EXPECT_EQ(countInServerLog("130 class list = 46 bytes: "), 1u);
    EXPECT_EQ(countInServerLog("101 client process identity = 8 bytes: "), 1u);
}

}  // namespace
}  // namespace dovrel::test
