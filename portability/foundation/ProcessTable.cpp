#include "foundation/ProcessTable.h"

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <climits>
#include <cstdlib>
#include <iterator>
#include <sstream>

#include "SystemRoot.h"
#include "corefoundation/Bundle.h"
#include "foundation/FileContent.h"
#include "foundation/OpenFolder.h"
#include "foundation/Paths.h"

namespace portability {
namespace {

constexpr const char* kProcesses = "/proc";

// Fields of /proc/<pid>/stat, counted from the state, which follows the name.
enum StatusField { kState = 0, kParent = 1, kGroup = 2, kFlags = 6, kStartTime = 19, kFieldsNeeded = 20 };

// Of the flags: the process is on its way out.
constexpr unsigned long kExiting = 0x4;

std::string content(const std::string& path) {
    constexpr std::size_t kLimit = 1 << 20;
    return readFile(path, kLimit).value_or(std::string());
}

bool isProcess(const dirent& entry) {
    return entry.d_name[0] >= '1' && entry.d_name[0] <= '9';
}

bool hasEnded(char state) {
    return state == 'Z' || state == 'X' || state == 'x';
}

// The program behind the process. The system adds " (deleted)" when the file is gone or was replaced.
std::string programFile(const std::string& folder) {
    constexpr std::string_view kDeleted = " (deleted)";
    std::array<char, PATH_MAX> path;
    const ssize_t length = readlink((folder + "/exe").c_str(), path.data(), path.size());
    if (length <= 0) {
        return std::string();
    }
    std::string file(path.data(), static_cast<std::size_t>(length));
    const bool isMarked = file.size() > kDeleted.size() &&
                          file.compare(file.size() - kDeleted.size(), kDeleted.size(), kDeleted) == 0;
    if (isMarked && !isThere(file)) {
        file.resize(file.size() - kDeleted.size());
    }
    return file;
}

// Programs of other users may not be looked at, and the kernel's own tasks have none.
std::string statedFile(const std::string& folder, const std::string& shortName) {
    const std::string arguments = content(folder + "/cmdline");
    const std::string first = arguments.substr(0, arguments.find('\0'));
    return first.empty() ? shortName : first;
}

std::optional<Process> readProcess(const std::string& number) {
    const std::string folder = std::string(kProcesses) + '/' + number;
    const std::string status = content(folder + "/stat");
    // The name stands in parentheses and may contain some itself.
    const std::size_t nameBegin = status.find('(');
    const std::size_t nameEnd = status.rfind(')');
    struct stat owner;
    if (nameBegin == std::string::npos || nameEnd == std::string::npos || nameEnd < nameBegin ||
        stat(folder.c_str(), &owner) != 0) {
        return std::nullopt;
    }
    std::istringstream rest(status.substr(nameEnd + 1));
    const std::vector<std::string> fields{std::istream_iterator<std::string>(rest), {}};
    if (fields.size() < kFieldsNeeded || hasEnded(fields[kState][0])) {
        return std::nullopt;
    }
    Process process = {};
    process.id = std::atoi(number.c_str());
    process.parent = std::atoi(fields[kParent].c_str());
    process.group = std::atoi(fields[kGroup].c_str());
    process.user = owner.st_uid;
    process.state = fields[kState][0];
    process.startTime = std::strtoull(fields[kStartTime].c_str(), nullptr, 10);
    process.file = programFile(folder);
    if (process.file.empty()) {
        // It has given its program back already and will do nothing any more, though it is no zombie yet.
        if ((std::strtoul(fields[kFlags].c_str(), nullptr, 10) & kExiting) != 0) return std::nullopt;
        process.file = statedFile(folder, status.substr(nameBegin + 1, nameEnd - nameBegin - 1));
    }
    process.name = lastComponentOf(process.file);
    return process;
}

bool concernsThisRoot(const Process& process) {
    const std::string bundle = bundleAround(process.file);
    return bundle.empty() || isInFixedPlace(bundle);
}

}  // namespace

std::optional<Process> findProcess(pid_t id) {
    return id > 0 ? readProcess(std::to_string(id)) : std::nullopt;
}

std::vector<Process> listProcesses() {
    std::vector<Process> processes;
    OpenFolder entries(kProcesses);
    while (const dirent* entry = entries.next()) {
        std::optional<Process> process = isProcess(*entry) ? readProcess(entry->d_name) : std::nullopt;
        if (process && concernsThisRoot(*process)) {
            processes.push_back(std::move(*process));
        }
    }
    return processes;
}

std::size_t countProcesses() {
    std::size_t count = 0;
    OpenFolder entries(kProcesses);
    while (const dirent* entry = entries.next()) {
        count += isProcess(*entry) ? 1 : 0;
    }
    return count;
}

}  // namespace portability
