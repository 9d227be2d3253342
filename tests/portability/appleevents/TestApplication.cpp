#include "TestApplication.h"

#include <Carbon/Carbon.h>
#include <CoreServices/CoreServices.h>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <vector>

#include "Events.h"
#include "tests/support/WaitUntil.h"

// The platform does not declare this function for 64-bit programs, but has it.
extern "C" void RunApplicationEventLoop(void);

namespace {

constexpr char kHoldVariable[] = "EVENT_TEST_HOLD";
constexpr char kReportVariable[] = "EVENT_TEST_REPORT";
constexpr std::chrono::seconds kGenerous(60);

int descriptorFrom(const char* variable) {
    return std::atoi(std::getenv(variable));
}

void report(char token) {
    if (write(descriptorFrom(kReportVariable), &token, 1) != 1) throw std::runtime_error("pipe");
}

OSErr copyDirect(const AppleEvent* event, AppleEvent* reply) {
    DescType type = typeNull;
    Size size = 0;
    const OSErr error = AESizeOfParam(event, keyDirectObject, &type, &size);
    if (error != noErr) return error;
    std::vector<char> bytes(static_cast<size_t>(size) + 1);
    AEGetParamPtr(event, keyDirectObject, type, nullptr, bytes.data(), size, nullptr);
    return AEPutParamPtr(reply, keyDirectObject, type, bytes.data(), size);
}

OSErr putNumber(AppleEvent* reply, AEKeyword keyword, long number) {
    const SInt32 value = static_cast<SInt32>(number);
    return AEPutParamPtr(reply, keyword, typeSInt32, &value, sizeof value);
}

OSErr fail(const AppleEvent* event, AppleEvent* reply, bool withText) {
    SInt32 number = 0;
    AEGetParamPtr(event, keyDirectObject, typeSInt32, nullptr, &number, sizeof number, nullptr);
    AEPutParamPtr(reply, 'part', typeChar, "kept", 4);
    if (withText) AEPutParamPtr(reply, keyErrorString, typeChar, "no luck", 7);
    return static_cast<OSErr>(number);
}

OSErr reportReplyType(const AppleEvent*, AppleEvent* reply) {
    const char kind = reply->descriptorType == typeNull ? 'n' : 'e';
    report(kind);
    return noErr;
}

OSErr hold(const AppleEvent* event, AppleEvent* reply) {
    report('h');
    char token;
    while (read(descriptorFrom(kHoldVariable), &token, 1) < 0 && errno == EINTR) {
    }
    if (reply->descriptorType == typeNull) return noErr;
    return copyDirect(event, reply);
}

OSErr tellAttributes(const AppleEvent* event, AppleEvent* reply) {
    for (const AEKeyword keyword : {AEKeyword{keyReturnIDAttr}, AEKeyword{keyTransactionIDAttr}}) {
        SInt32 number = -1;
        AEGetAttributePtr(event, keyword, typeSInt32, nullptr, &number, sizeof number, nullptr);
        putNumber(reply, keyword, static_cast<long>(number));
    }
    for (const AEKeyword keyword : {AEKeyword{keyEventClassAttr}, AEKeyword{keyEventIDAttr}}) {
        OSType code = 0;
        AEGetAttributePtr(event, keyword, typeType, nullptr, &code, sizeof code, nullptr);
        AEPutParamPtr(reply, keyword, typeType, &code, sizeof code);
    }
    SInt16 source = -1;
    AEGetAttributePtr(event, keyEventSourceAttr, typeSInt16, nullptr, &source, sizeof source, nullptr);
    putNumber(reply, keyEventSourceAttr, source);
    SInt32 sender = -1;
    AEGetAttributePtr(event, keySenderPIDAttr, typeSInt32, nullptr, &sender, sizeof sender, nullptr);
    return putNumber(reply, keySenderPIDAttr, static_cast<long>(sender));
}

OSErr tellMissed(const AppleEvent* event, AppleEvent* reply) {
    const auto ask = [event] {
        DescType type = typeNull;
        Size size = 0;
        return AEGetAttributePtr(event, keyMissedKeywordAttr, typeWildCard, &type, nullptr, 0, &size);
    };
    putNumber(reply, 'befo', ask());
    char buffer[1];
    AEGetParamPtr(event, keyDirectObject, typeWildCard, nullptr, buffer, 1, nullptr);
    return putNumber(reply, 'aftr', ask());
}

OSErr handle(const AppleEvent* event, AppleEvent* reply, SRefCon) {
    static long count = 0;
    OSType id = 0;
    AEGetAttributePtr(event, keyEventIDAttr, typeType, nullptr, &id, sizeof id, nullptr);
    switch (id) {
        case kEcho:
            return copyDirect(event, reply);
        case kAnswerEmpty:
            return AEPutParamPtr(reply, keyDirectObject, typeChar, nullptr, 0);
        case kAnswerNothing:
            return noErr;
        case kFail:
            return fail(event, reply, false);
        case kFailWithText:
            return fail(event, reply, true);
        case kThrow:
            throw std::runtime_error("from the handler");
        case kDecline:
            return errAEEventNotHandled;
        case kHold:
            return hold(event, reply);
        case kDie:
            raise(SIGKILL);
            return noErr;
        case kReport:
            return reportReplyType(event, reply);
        case kAttributes:
            return tellAttributes(event, reply);
        case kMissed:
            return tellMissed(event, reply);
        case kSuspend:
            report(AESuspendTheCurrentEvent(event) == noErr ? 's' : 'x');
            return copyDirect(event, reply);
        case kCount:
            return putNumber(reply, keyDirectObject, ++count);
        default:
            return errAEEventFailed;
    }
}

void copyOrLink(const std::filesystem::path& from, const std::filesystem::path& to) {
    std::error_code failed;
    std::filesystem::create_hard_link(from, to, failed);
    if (failed) std::filesystem::copy_file(from, to);
}

}  // namespace

std::string& testProgram() {
    static std::string path;
    return path;
}

bool isTestApplication() {
    return std::getenv(kHoldVariable) != nullptr;
}

int runTestApplication() {
    for (const AEEventID id :
         std::vector<AEEventID>{kEcho, kAnswerEmpty, kAnswerNothing, kFail, kFailWithText, kThrow, kDecline,
                                kHold, kDie, kReport, kAttributes, kMissed, kCount, kSuspend}) {
        AEInstallEventHandler(kTestClass, id, handle, SRefCon(), false);
    }
    RunApplicationEventLoop();
    return 0;
}

TestApplication::TestApplication(const TemporaryEnvironment& environment, const std::string& signature)
    : signature_(signature) {
    const std::filesystem::path contents =
        environment.makeFolder("root/Applications/" + signature + ".app/Contents/MacOS").parent_path();
    executable_ = (contents / "MacOS" / "application").string();
    copyOrLink(testProgram(), executable_);
    std::ofstream(contents / "Info.plist")
        << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>"
           "<key>CFBundlePackageType</key><string>APPL</string>"
           "<key>CFBundleExecutable</key><string>application</string>"
           "<key>CFBundleIdentifier</key><string>example.test.application</string>"
           "<key>LSBackgroundOnly</key><true/>"
           "<key>CFBundleSignature</key><string>"
        << signature << "</string></dict></plist>\n";
    if (pipe(holding_) != 0 || pipe(reports_) != 0) throw std::runtime_error("no pipe");
    fcntl(holding_[1], F_SETFD, FD_CLOEXEC);
    fcntl(reports_[0], F_SETFD, FD_CLOEXEC);
}

TestApplication::~TestApplication() {
    kill();
    for (const int descriptor : {holding_[0], holding_[1], reports_[0], reports_[1]})
        close(descriptor);
}

void TestApplication::launch() {
    const std::string hold = std::to_string(holding_[0]);
    const std::string report = std::to_string(reports_[1]);
    process_ = fork();
    if (process_ != 0) return;
    setenv(kHoldVariable, hold.c_str(), 1);
    setenv(kReportVariable, report.c_str(), 1);
    execl(executable_.c_str(), executable_.c_str(), static_cast<char*>(nullptr));
    _exit(127);
}

bool TestApplication::start() {
    launch();
    return waitUntilReachable();
}

bool TestApplication::waitUntilReachable() const {
    const Descriptor address = makeAddress(signature_.c_str());
    Descriptor event = makeEvent(address, kAnswerNothing);
    return dovrel::test::waitUntil([&event] {
        Descriptor reply;
        return AESendMessage(event.get(), reply.get(), kAEWaitReply, kAEDefaultTimeout) == noErr;
    });
}

int TestApplication::waitForEnd() {
    int status = 0;
    if (!dovrel::test::waitUntil([&] { return waitpid(process_, &status, WNOHANG) != 0; })) return -2;
    process_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void TestApplication::kill() {
    if (process_ <= 0) return;
    ::kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
    process_ = -1;
}

void TestApplication::letGo() const {
    const char token = 'x';
    if (write(holding_[1], &token, 1) != 1) throw std::runtime_error("pipe");
}

int TestApplication::nextReport() const {
    pollfd waited{reports_[0], POLLIN, 0};
    char report;
    const int limit = static_cast<int>(std::chrono::milliseconds(kGenerous).count());
    if (poll(&waited, 1, limit) != 1 || read(reports_[0], &report, 1) != 1) return -1;
    return static_cast<unsigned char>(report);
}
