// The server process of these tests. It does only what is needed to be launched,
// woken and called, and to misbehave.
//
// It is installed as Contents/MacOS/Merrowd in an application bundle. It replies to the handshake with its
// text, and to data with the request's bytes. It writes a line to Contents/log for each event.
//
// The file Contents/behaviour has lines such as "misbehave=empty". Keys and values are those of the development
// server (docs/development-server.md):
//   handshake       empty, noParameter, silent
//   misbehave       empty, noParameter, silent, vanishBefore; here also noHandler: it has no handler for data
//   misbehaveTimes  1: only the first process vanishes
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

/// Returns the value of the setting; "" if the file does not contain it.
std::string setting(const std::string& key) {
    std::ifstream file(contentsFolder() / "behaviour");
    for (std::string line; std::getline(file, line);)
        if (line.rfind(key + "=", 0) == 0) return line.substr(key.size() + 1);
    return "";
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

bool vanishesNow() {
    const fs::path mark = contentsFolder() / "vanished";
    if (setting("misbehaveTimes") == "1" && fs::exists(mark)) return false;
    std::ofstream(mark).flush();
    return true;
}

OSErr put(AppleEvent* reply, const void* bytes, uint32_t length) {
    return AEPutParamPtr(reply, keyDirectObject, typeChar, bytes, static_cast<Size>(length));
}

OSErr answer(const std::string& fault, const dovrel::CPPByteArray& bytes, AppleEvent* reply) {
    if (fault == "vanishBefore" && vanishesNow()) _exit(1);
    if (fault == "silent") staySilent();
    if (fault == "noParameter") return noErr;
    if (fault == "empty") return put(reply, nullptr, 0);
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
    return answer(setting("handshake"), bytes, reply);
}

OSErr handleData(const AppleEvent* event, AppleEvent* reply, SRefCon) {
    const dovrel::POS_to_Client_Communicator channel;
    dovrel::POSTransferObj request;
    channel.ReceiveTransferObj(event, request);
    log("data " + std::to_string(request.bytes().getSize()));
    return answer(setting("misbehave"), request.bytes(), reply);
}

}  // namespace

int main() {
    log("start " + std::to_string(getpid()));
    AEInstallEventHandler('BUFF', 'waCl', handleWake, SRefCon(), false);
    if (setting("misbehave") != "noHandler")
        AEInstallEventHandler('BUFF', 'data', handleData, SRefCon(), false);
    RunApplicationEventLoop();
    log("end");
    return EXIT_SUCCESS;
}
