#include "tests/support/RootProcesses.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>

namespace dovrel::test {

namespace {

std::string readFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

}  // namespace

std::vector<pid_t> findProcesses(const std::string& root, const std::string& name) {
    const std::string variable = "POS_SYSTEM_ROOT=" + root + '\0';
    std::vector<pid_t> found;
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
        const std::string number = entry.path().filename();
        if (number.find_first_not_of("0123456789") != std::string::npos) continue;
        if (number == std::to_string(getpid())) continue;
        // The environment of a process that has ended is empty.
        if (readFile(entry.path() / "environ").find(variable) == std::string::npos) continue;
        if (name.empty() || readFile(entry.path() / "comm") == name + '\n')
            found.push_back(std::stoi(number));
    }
    return found;
}

}  // namespace dovrel::test
