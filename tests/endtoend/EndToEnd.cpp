#include "tests/endtoend/EndToEnd.h"

#include <algorithm>
#include <filesystem>

namespace dovrel::test {

namespace {

std::string makeIdentifier(const std::string& name) {
    std::string identifier = name;
    identifier.resize(POS_IDENTIFIER_SIZE, '\0');
    return identifier;
}

uint32_t toSize(const std::string& text) {
    return static_cast<uint32_t>(text.size());
}

}  // namespace

uint32_t Host::registerApplication(uint32_t& application, const std::vector<std::string>& classes,
                                   std::vector<uint16_t> options, const std::string& name) {
    std::vector<std::string> identifiers;
    for (const std::string& className : classes)
        identifiers.push_back(makeIdentifier(className));
    std::vector<void*> list;
    for (std::string& identifier : identifiers)
        list.push_back(identifier.data());
    return library_.posRegisterApplicationWithClasses(
        name.c_str(), list.data(), static_cast<uint32_t>(list.size()), options.data(),
        static_cast<uint32_t>(2 * options.size()), &application);
}

uint32_t Host::registered(const std::vector<std::string>& classes) {
    uint32_t application = 0;
    EXPECT_EQ(registerApplication(application, classes), POS_OK);
    return application;
}

ObjectId Host::instantiate(uint32_t application, const std::string& className) {
    std::string identifier = makeIdentifier(className);
    void* classId = identifier.data();
    void* object = nullptr;
    const uint32_t status = library_.posInstantiateObject(application, &classId, &object);
    EXPECT_EQ(status == POS_OK, object != nullptr);
    return {library_, object};
}

Answered Host::call(uint32_t application, ObjectId& object, const char* method, const std::string& argument) {
    std::string parameters = argument;
    uint8_t* result = nullptr;
    uint32_t length = 0;
    const uint32_t status = library_.posCallMethod(
        application, object.handle(), method, mutableBytes(parameters), toSize(parameters), &result, &length);
    return taken(status, result, length);
}

Answered Host::command(uint32_t application, const std::string& command, const std::string& argument) {
    std::string commandBytes = command;
    std::string argumentBytes = argument;
    void* commandPointer = commandBytes.data();
    void* argumentPointer = argumentBytes.data();
    uint8_t* result = nullptr;
    uint32_t length = 0;
    const uint32_t status = library_.posExecuteCMD(application, &commandPointer, toSize(command),
                                                   &argumentPointer, toSize(argument), &result, &length);
    return taken(status, result, length);
}

Answered Host::information(uint32_t application, const std::string& request) {
    uint8_t* info = nullptr;
    int32_t length = 0;
    const uint32_t status = library_.posGetInfo(application, request.data(), toSize(request), &info, &length);
    return taken(status, info, static_cast<uint32_t>(length));
}

Answered Host::taken(uint32_t status, uint8_t* bytes, uint32_t length) {
    EXPECT_EQ(bytes == nullptr, length == 0);
    Answered answered;
    answered.status = status;
    if (bytes != nullptr) answered.bytes.assign(bytes, bytes + length);
    library_.posDeleteDLLHeapData(bytes);
    return answered;
}

Console::Console() {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
}

Console::~Console() {
    stop();
}

void Console::stop() {
    if (!running_) return;
    running_ = false;
    output_ = testing::internal::GetCapturedStdout();
    log_ = testing::internal::GetCapturedStderr();
}

size_t EndToEnd::countAlerts(const Console& console, const std::string& body) {
    return countOccurrences(console.systemLog(), ShippedTexts::unshownAlert(body));
}

size_t EndToEnd::countFailures(const Console& console, const std::string& message,
                               const std::string& explanation) const {
    return countAlerts(console, texts_.failureBody("End to end", message, explanation));
}

size_t EndToEnd::alerts(const Console& console) {
    return countOccurrences(console.systemLog(), "No Error dialogue shown");
}

size_t EndToEnd::countInServerLog(const std::string& text) const {
    return countOccurrences(root_.serverLog(), text);
}

size_t countOccurrences(const std::string& text, const std::string& part) {
    size_t count = 0;
    for (size_t at = 0; (at = text.find(part, at)) != std::string::npos; at += part.size())
        ++count;
    return count;
}

std::vector<std::string> openDescriptors() {
    std::vector<std::string> descriptors;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code failed;
        const std::string target = std::filesystem::read_symlink(entry.path(), failed).string();
        // Leaves out the descriptor of the listing itself, which is closed by now.
        if (!failed) descriptors.push_back(entry.path().filename().string() + " " + target);
    }
    std::sort(descriptors.begin(), descriptors.end());
    return descriptors;
}

std::string littleEndian(uint32_t number) {
    std::string bytes;
    for (int shift = 0; shift < 32; shift += 8)
        bytes += static_cast<char>(number >> shift & 0xFF);
    return bytes;
}

}  // namespace dovrel::test
