// merrowd-control: sends settings to the running development server and prints its reply.
//
//     merrowd-control [FILE]     FILE (default: standard input) contains a properties text; server/README.md
//                                lists the settings
//     merrowd-control --quit     asks the server to end
//
// Exit status:
//
// - 0: the server applied all settings, or was asked to end.
// - 1: the server reported problems.
// - 2: the server could not be reached, or merrowd-control itself failed.
#include <cstdio>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <string>

#include "InterProcessCommunication/Client_to_POS_Communicator.h"
#include "InterProcessCommunication/EventDescriptor.h"
#include "InterProcessCommunication/POS_to_Client_Communicator.h"
#include "client/exceptions/CPPException.h"
#include "server/SelfEvent.h"
#include "settings/Properties.h"

namespace {

constexpr SInt32 kTimeOutTicks = 60 * 60;

int32_t send(const std::string& text, std::string& answer) {
    const dovrel::POS_to_Client_Communicator channel;
    dovrel::EventDescriptor event;
    dovrel::EventDescriptor reply;
    int32_t status =
        channel.CreateEvent(merrowd::kControlEvent.eventClass, merrowd::kControlEvent.eventId, event.get());
    if (status != noErr) return status;
    status = channel.PutData(event.get(), reinterpret_cast<const uint8_t*>(text.data()),
                             static_cast<uint32_t>(text.size()));
    if (status != noErr) return status;
    status =
        AESend(event.get(), reply.get(), kAEWaitReply, kAENormalPriority, kTimeOutTicks, nullptr, nullptr);
    if (status != noErr) return status;

    std::unique_ptr<uint8_t[]> bytes;
    uint32_t length = 0;
    status = channel.GetData(reply.get(), bytes, length);
    answer.assign(bytes.get(), bytes.get() + length);
    return status;
}

int quit() {
    const int32_t status = dovrel::Client_to_POS_Communicator().QuitServer();
    if (status != noErr) std::cerr << "merrowd-control: the server could not be asked (" << status << ")\n";
    return status == noErr ? 0 : 2;
}

std::string readAll(std::istream& stream) {
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

int run(int argc, char** argv) {
    if (argc == 2 && std::string(argv[1]) == "--quit") return quit();
    std::ifstream file;
    if (argc > 1) file.open(argv[1]);
    if (argc > 2 || (argc > 1 && !file)) {
        std::cerr << "usage: merrowd-control [FILE | --quit]\n";
        return 2;
    }
    std::string answer;
    const int32_t status = send(readAll(argc > 1 ? file : std::cin), answer);
    if (status != noErr) {
        std::cerr << "merrowd-control: no server answered (" << status << ")\n";
        return 2;
    }
    std::cout << answer;
    dovrel::Properties standing;
    standing.load(answer, true);
    int32_t problems = 0;
    return standing.findInt("problems", problems) && problems == 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return run(argc, argv);
    } catch (dovrel::CPPException* caught) {
        const std::unique_ptr<dovrel::CPPException> failure(caught);
        const char* const message = failure->getMessage();
        std::cerr << "merrowd-control: " << (message != nullptr ? message : "failed") << "\n";
        return 2;
    }
}
