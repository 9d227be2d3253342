#include "portability/processes/ProcessTable.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>

#include "portability/corefoundation/Bundle.h"
#include "portability/posix/FileContent.h"
#include "portability/posix/OpenFolder.h"
#include "portability/posix/Paths.h"
#include "portability/posix/SystemRoot.h"
#include "portability/processes/ApplicationBundle.h"
#include "portability/processes/InstalledApplications.h"
#include "portability/transport/EndpointOwner.h"

namespace portability {
namespace {

constexpr const char* kProcesses = "/proc";

// The flags of a process that is exiting, and of a task of the kernel, which has no program.
constexpr unsigned long kExiting = 0x4;
constexpr unsigned long kKernelTask = 0x200000;

std::string getFolder(const std::string& number) {
    return std::string(kProcesses) + '/' + number;
}

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

// Returns the path of the program that the process runs. Returns "" if this process must not read it, and nothing
// if the process has none: a task of the kernel never has, and an ended or exiting process has released its own.
// The system appends " (deleted)" if the file was deleted or replaced.
std::optional<std::string> programFile(const std::string& folder) {
    constexpr std::string_view kDeleted = " (deleted)";
    std::array<char, PATH_MAX> path;
    const ssize_t length = readlink((folder + "/exe").c_str(), path.data(), path.size());
    if (length <= 0) {
        return errno == ENOENT ? std::nullopt : std::optional<std::string>(std::string());
    }
    std::string file(path.data(), static_cast<std::size_t>(length));
    const bool isMarked = file.size() > kDeleted.size() &&
                          file.compare(file.size() - kDeleted.size(), kDeleted.size(), kDeleted) == 0;
    if (isMarked && !isThere(file)) {
        file.resize(file.size() - kDeleted.size());
    }
    return file;
}

// Returns what the process itself states as its program, or its short name. It is used if the program's path
// is not known: other users' processes do not allow reading it.
std::string statedFile(const std::string& folder, const std::string& shortName) {
    const std::string arguments = content(folder + "/cmdline");
    const std::string first = arguments.substr(0, arguments.find('\0'));
    return first.empty() ? shortName : first;
}

// Returns the text after `count` more fields, each of which a space precedes. Returns null if there are fewer.
const char* afterFields(const char* text, int count) {
    for (; text != nullptr && count > 0; --count)
        text = std::strchr(text + 1, ' ');
    return text;
}

// Reads the fields after the name in /proc/<pid>/stat. Returns false if the text is incomplete. sscanf would
// also convert the fields between, which takes a tenth of the time for the whole list.
bool readStatus(const char* text, Process& process, unsigned long& flags) {
    const char* const parent = afterFields(text, 1);
    const char* const group = afterFields(parent, 1);
    const char* const flagsField = afterFields(group, 4);
    const char* const startTime = afterFields(flagsField, 13);
    if (startTime == nullptr) return false;
    process.state = text[1];
    process.parent = std::atoi(parent);
    process.group = std::atoi(group);
    flags = std::strtoul(flagsField, nullptr, 10);
    process.startTime = std::strtoull(startTime, nullptr, 10);
    return true;
}

std::optional<Process> readProcess(const std::string& number, uid_t user) {
    const std::string folder = getFolder(number);
    // Before the status, which takes the system three times as long.
    std::optional<std::string> program = programFile(folder);
    if (!program) {
        return std::nullopt;
    }
    const std::string status = content(folder + "/stat");
    // The name is enclosed in parentheses and may contain parentheses itself. It has at most 64 bytes.
    constexpr std::size_t kLongestName = 64;
    const std::size_t nameBegin = status.find('(');
    const std::size_t nameEnd =
        nameBegin == std::string::npos ? nameBegin : status.rfind(')', nameBegin + 1 + kLongestName);
    if (nameEnd == std::string::npos || nameEnd < nameBegin) {
        return std::nullopt;
    }
    const std::string shortName = status.substr(nameBegin + 1, nameEnd - nameBegin - 1);
    Process process = {};
    process.id = std::atoi(number.c_str());
    process.user = user;
    unsigned long flags = 0;
    if (!readStatus(status.c_str() + nameEnd + 1, process, flags) || hasEnded(process.state)) {
        return std::nullopt;
    }
    // Only needed if the program must not be read: the others have been recognised without a program.
    if (program->empty() && (flags & (kExiting | kKernelTask)) != 0) {
        return std::nullopt;
    }
    process.file = program->empty() ? statedFile(folder, shortName) : *std::move(program);
    process.name = getLastComponent(process.file);
    return process;
}

// The owner of the folder in /proc is the effective user of the process. (The files in that folder belong to
// root if the process cannot be inspected.)
bool readUser(const std::string& number, uid_t& user) {
    struct stat owner;
    if (stat(getFolder(number).c_str(), &owner) != 0) return false;
    user = owner.st_uid;
    return true;
}

// Returns whether the path names the same folder for this process and for the other. In a
// container, or with other mounts, the other process may see a different bundle there. Also returns
// false if it cannot be inspected.
bool seesSameFolder(const Process& process, const std::string& folder) {
    const std::string seen = getFolder(std::to_string(process.id)) + "/root" + folder;
    struct stat ours;
    struct stat theirs;
    return stat(folder.c_str(), &ours) == 0 && stat(seen.c_str(), &theirs) == 0 &&
           ours.st_dev == theirs.st_dev && ours.st_ino == theirs.st_ino;
}

// Returns whether all bundles, which have the same name, are copies of one application: all have the same
// signature. Only one copy of an application can run at a time. Different applications could not be told
// apart by their names.
bool areOneApplication(const std::vector<std::string>& bundles) {
    if (bundles.size() == 1) return true;
    const OSType signature = readSignature(bundles.front());
    return signature != 0 &&
           std::all_of(bundles.begin(), bundles.end(),
                       [signature](const std::string& bundle) { return readSignature(bundle) == signature; });
}

// Returns whether the process can be reached as the application. A process that is ending, or that was not
// launched and has just started, has no endpoint. If it were listed, it would keep others from launching the
// application, although it receives nothing. An application without a signature has no endpoint.
bool isReachable(const Process& process, OSType signature) {
    return signature == 0 || isEndpointOwner(process.id, signature);
}

bool isApplication(const Process& process, const std::string& bundle) {
    return isExecutableOf(bundle, process.file) && seesSameFolder(process, bundle) &&
           isReachable(process, readSignature(bundle));
}

bool concernsThisRoot(const Process& process, const InstalledApplications& installed) {
    const std::vector<std::string>& namesakes = installed.named(process.name);
    if (!namesakes.empty()) {
        return areOneApplication(namesakes) &&
               std::any_of(namesakes.begin(), namesakes.end(),
                           [&process](const std::string& bundle) { return isApplication(process, bundle); });
    }
    const std::string bundle = bundleAround(process.file);
    return bundle.empty() || isInFixedPlace(bundle);
}

}  // namespace

std::optional<Process> findProcess(pid_t id) {
    const std::string number = std::to_string(id);
    uid_t user = 0;
    return id > 0 && readUser(number, user) ? readProcess(number, user) : std::nullopt;
}

std::vector<Process> listProcesses() {
    const InstalledApplications installed;
    const uid_t ourselves = geteuid();
    std::vector<Process> processes;
    OpenFolder entries(kProcesses);
    while (const dirent* entry = entries.next()) {
        uid_t user = 0;
        if (!isProcess(*entry) || !readUser(entry->d_name, user) || user != ourselves) continue;
        std::optional<Process> process = readProcess(entry->d_name, user);
        if (process && concernsThisRoot(*process, installed)) {
            processes.push_back(std::move(*process));
        }
    }
    return processes;
}

std::size_t countProcesses() {
    // Linux counts the processes as links of the folder, besides its fixed folders. To list them all takes 50
    // times as long.
    struct stat folder;
    constexpr nlink_t kLinksOfEveryFolder = 2;
    if (stat(kProcesses, &folder) == 0 && folder.st_nlink > kLinksOfEveryFolder) return folder.st_nlink;
    std::size_t count = 0;
    OpenFolder entries(kProcesses);
    while (const dirent* entry = entries.next()) {
        count += isProcess(*entry) ? 1 : 0;
    }
    return count;
}

}  // namespace portability
