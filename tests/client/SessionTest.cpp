#include "tests/client/SessionTest.h"

#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "platform/synchronization/SynchronizationFactory.h"
#include "settings/MultiLanguageSupport.h"

namespace dovrel::test {

namespace {

constexpr char kTextsContent[] =
    "//LANGUAGE\nSTR:English\n"
    "//DLL_ERROR_DIALOG_TITLE\nSTR:Failure\n"
    "//DLL_MESSAGE_DIALOG_TITLE\nSTR:News\n"
    "//DLL_ERROR_ERRORMESSAGEHEAD_PART1\nSTR:In <\n"
    "//DLL_ERROR_ERRORMESSAGEHEAD_PART2\nSTR:> this went wrong:SDNL\n"
    "//DLL_ERROR_UNRECOVERABLE_ERROR\nSTR:Stopped.\n"
    "//DLL_ERROR_POS_CLASS_OR_DRIVER_NOT_FOUND_EXCEPTION\nSTR:Driver.\n"
    "//DLL_ERROR_POS_OBJECT_INSTANTIATION_EXCEPTION\nSTR:Object.\n"
    "//DLL_ERROR_POS_REGISTRATION_EXCEPTION\nSTR:Register.\n"
    "//DLL_ATTENTION_MESSAGE\nSTR:Really not?\n"
    "//GENERAL_ERROR_UNKNOWN_EXCEPTION\nSTR:Nobody knows.\n"
    "//DLL_POS_ACCESS_CLIENT_EXCEPTION_CLASS_NOT_REGISTERED\nSTR:No such class here.\n"
    "//DLL_POS_ACCESS_CLIENT_EXCEPTION_CPP_A_NULL_POINTER_HAS_BEEN_PASSED\nSTR:Null was passed.\n"
    "//DLL_POS_ACCESS_CLIENT_EXCEPTION_INFORMATION_TOO_LONG\nSTR:Too much.\n"
    "//DLL_POS_TRANSFER_OBJECT_TRADER_POS_EXCEPTION_NO_VALID_POS_INTERFACE\nSTR:Another interface.\n";

}  // namespace

std::string reportBody(const std::string& application, const std::string& message,
                       const std::string& explanation) {
    return "In <" + application + "> this went wrong:\r" + message + "\r\r" + explanation;
}

Identifier::Identifier(const std::string& name) {
    std::memcpy(bytes_, name.data(), name.size());
}

SystemRootTest::SystemRootTest() {
    setenv("POS_SYSTEM_ROOT", root_.path().c_str(), 1);
    setenv("HOME", root_.path("home").c_str(), 1);
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG", "DISPLAY", "WAYLAND_DISPLAY"})
        unsetenv(variable);
    root_.write(kTexts, kTextsContent);
    // The platform provides this folder; the library creates its own folder in it.
    std::filesystem::create_directories(root_.path("Library/Logs"));
    MultiLanguageSupport::initialize("English");
}

SessionTest::SessionTest() {
    parts_.createForwarder = [this] {
        auto forwarder = std::make_unique<AcceptingForwarder>();
        forwarder_ = forwarder.get();
        return forwarder;
    };
    parts_.createDialog = [this] {
        auto dialog = std::make_unique<ScriptedMessageDialog>();
        dialog_ = dialog.get();
        return dialog;
    };
    parts_.createLock = createMutex;
    openSession(parts_);
}

SessionTest::~SessionTest() {
    if (currentSession() != nullptr) closeSession();
}

uint32_t SessionTest::registered(const char* name, std::vector<uint16_t> options,
                                 std::vector<std::string> classes) {
    std::vector<Identifier> identifiers(classes.begin(), classes.end());
    std::vector<void*> list;
    for (Identifier& identifier : identifiers)
        list.push_back(identifier.bytes());
    uint32_t applicationId = 0;
    EXPECT_EQ(posRegisterApplicationWithClasses(
                  name, list.data(), static_cast<uint32_t>(list.size()), options.data(),
                  static_cast<uint32_t>(options.size() * sizeof(uint16_t)), &applicationId),
              POS_OK);
    return applicationId;
}

}  // namespace dovrel::test
