// The server process of these tests. It does only what is needed to be launched,
// woken and called, and to misbehave.
//
// It is installed as Contents/MacOS/Merrowd in an application bundle. The file Contents/behaviour configures
// it with lines "wake=" or "data=", each followed by one of the words below. The server writes a line to
// Contents/log for each event.
//   answer      replies with the handshake's text, or with the request's bytes
//   nothing     replies without a direct parameter
//   empty       replies with an empty direct parameter
//   silent      does not reply
//   die         ends the process at once; "die-once" does so only in the first process
//   no-handler  has no handler (data only)
#include <Carbon/Carbon.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "InterProcessCommunication/POSTransferObj.h"
#include "InterProcessCommunication/POS_to_Client_Communicator.h"

// The platform's 64-bit headers do not declare this function, but the platform has it.
extern "C" void RunApplicationEventLoop(void);

namespace {

namespace fs = std::filesystem;

fs::path contentsFolder() {
    return fs::read_symlink("/proc/self/exe").parent_path().parent_path();
}

std::string behaviour(const std::string& event) {
    std::ifstream file(contentsFolder() / "behaviour");
    for (std::string line; std::getline(file, line);)
        if (line.rfind(event + "=", 0) == 0) return line.substr(event.size() + 1);
    return "answer";
}

// Each line is one write, so that a reader never sees half a line.
void log(const std::string& text) {
    const int file =
        open((contentsFolder() / "log").c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
    const std::string line = text + "\n";
    if (write(file, line.data(), line.size()) < 0) std::abort();
    close(file);
}

[[noreturn]] void staySilent() {
    for (;;)
        pause();
}

bool diesNow(const std::string& word) {
    if (word == "die") return true;
    const fs::path mark = contentsFolder() / "died";
    if (word != "die-once" || fs::exists(mark)) return false;
    std::ofstream(mark).flush();
    return true;
}

OSErr put(AppleEvent* reply, const void* bytes, uint32_t length) {
    return AEPutParamPtr(reply, keyDirectObject, typeChar, bytes, static_cast<Size>(length));
}

OSErr behave(const std::string& word, const dovrel::CPPByteArray& bytes, AppleEvent* reply) {
    if (diesNow(word)) _exit(1);
    if (word == "silent") staySilent();
    if (word == "nothing") return noErr;
    if (word == "empty") return put(reply, nullptr, 0);
    return put(reply, bytes.data(), bytes.getSize());
}

OSErr handleWake(const AppleEvent* event, AppleEvent* reply, SRefCon) {
    const dovrel::POS_to_Client_Communicator channel;
    std::unique_ptr<uint8_t[]> text;
    uint32_t length = 0;
    channel.GetData(event, text, length);
    log("wake " + std::string(text.get(), text.get() + length));
    dovrel::CPPByteArray bytes;
    bytes.set(text.get(), length);
    return behave(behaviour("wake"), bytes, reply);
}

OSErr handleData(const AppleEvent* event, AppleEvent* reply, SRefCon) {
    const dovrel::POS_to_Client_Communicator channel;
    dovrel::POSTransferObj request;
    channel.ReceiveTransferObj(event, request);
    log("data " + std::to_string(request.bytes().getSize()));
    return behave(behaviour("data"), request.bytes(), reply);
}

}  // namespace

int main() {
    log("start " + std::to_string(getpid()));
    AEInstallEventHandler('BUFF', 'waCl', handleWake, SRefCon(), false);
    if (behaviour("data") != "no-handler")
        AEInstallEventHandler('BUFF', 'data', handleData, SRefCon(), false);
    RunApplicationEventLoop();
    log("end");
    return EXIT_SUCCESS;
}
