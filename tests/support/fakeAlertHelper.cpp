// An alert helper without a window that follows commands in its environment. It is for tests of the host's
// side and of its handling of faults:
//
//     FAKE_ALERT          commands, one per line; run after the request has been read; then the helper ends
//         send LINE           sends the line
//         raw BYTES           sends the bytes without a line feed
//         flood               sends a line without end, until the host closes the connection
//         wait                waits until the host closes its end
//         until FILE          waits until the file exists
//         crash               ends with a signal
//     FAKE_ALERT_DEAF     if set, the helper does not read the request
//     FAKE_ALERT_NOTES    a file for notes: "process NUMBER", "descriptors ..." (the open ones),
//                         "request LINE", and "closed" after "wait"
#include <fcntl.h>
#include <signal.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>

namespace {

constexpr int kStream = 3;

std::string readValue(const char* variable) {
    const char* const value = std::getenv(variable);
    return value != nullptr ? value : "";
}

// Each note is one write, so that a reader never sees half a line.
void note(const std::string& line) {
    std::ofstream(readValue("FAKE_ALERT_NOTES"), std::ios::app) << line + '\n' << std::flush;
}

std::string openDescriptors() {
    std::set<int> numbers;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd"))
        numbers.insert(std::stoi(entry.path().filename()));
    std::string text;
    for (const int number : numbers) {
        // Leaves out the descriptor of the listed folder, which is closed by now.
        if (fcntl(number, F_GETFD) >= 0) text += ' ' + std::to_string(number);
    }
    return text;
}

std::string readLine() {
    std::string line;
    for (char byte = 0; recv(kStream, &byte, 1, 0) == 1 && byte != '\n';)
        line += byte;
    return line;
}

bool send(const std::string& bytes) {
    return ::send(kStream, bytes.data(), bytes.size(), MSG_NOSIGNAL) > 0;
}

void waitForEnd() {
    char byte = 0;
    while (recv(kStream, &byte, 1, 0) > 0) {
    }
    note("closed");
}

void run(const std::string& command) {
    if (command.rfind("send ", 0) == 0) send(command.substr(5) + '\n');
    if (command.rfind("raw ", 0) == 0) send(command.substr(4));
    if (command == "wait") waitForEnd();
    while (command.rfind("until ", 0) == 0 && !std::filesystem::exists(command.substr(6)))
        usleep(1000);
    if (command == "crash") raise(SIGKILL);
    while (command == "flood" && send(std::string(65536, 'x'))) {
    }
}

}  // namespace

int main() {
    note("process " + std::to_string(getpid()));
    note("descriptors" + openDescriptors());
    if (readValue("FAKE_ALERT_DEAF").empty()) note("request " + readLine());
    std::istringstream commands(readValue("FAKE_ALERT"));
    for (std::string command; std::getline(commands, command);)
        run(command);
    return 0;
}
