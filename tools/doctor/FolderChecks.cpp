#include "tools/doctor/FolderChecks.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>

#include "client/exceptions/CPPException.h"
#include "platform/files/Places.h"
#include "platform/text/ReadableText.h"
#include "settings/ConfigFileSystem.h"
#include "settings/LineGrammar.h"
#include "tools/system/SystemFacts.h"

namespace dovrel::tools {

namespace {

constexpr char kEndpoint[] = "endpoint folder";
constexpr char kLogs[] = "logs";
constexpr char kErrorLog[] = "error log";
constexpr size_t kShownEntries = 3;

constexpr char kRemoveFolder[] =
    "Let its owner or root remove it. The library creates it again, with mode 700.";

const EndpointFolder* findLast(const std::vector<EndpointFolder>& folders, EndpointFolder::State state) {
    const EndpointFolder* last = nullptr;
    for (const EndpointFolder& folder : folders)
        if (folder.state == state) last = &folder;
    return last;
}

// As errorLogPath(), which creates the folder if there is none.
std::string findErrorLog() {
    return logFolderPath(false) + places::kErrorLogName;
}

std::string withoutLastSlash(std::string path) {
    if (path.size() > 1 && path.back() == '/') path.pop_back();
    return path;
}

// Returns the folder itself, or the nearest folder above it that exists.
std::string nearestFolder(std::string path) {
    while (access(path.c_str(), F_OK) != 0 && errno == ENOENT && path.size() > 1)
        path.resize(std::max<size_t>(path.rfind('/'), 1));
    return path;
}

std::string read(const Properties& entry, const char* key) {
    std::string value;
    entry.findString(key, value);
    std::string text = readableText(restoreLineFeeds(value));
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');
    return text;
}

std::string describeEntry(const Properties& entry) {
    std::string text = read(entry, "TIME") + ", " + read(entry, "APPLICATION") + ": " +
                       read(entry, "MESSAGE") + " (type " + read(entry, "TYPE") + ", " +
                       read(entry, "TYPENAME") + ")";
    for (const char* const key : {"REQUEST", "FAILEDSTEP", "STATUS"}) {
        const std::string value = read(entry, key);
        if (!value.empty()) text += "; " + value;
    }
    return text;
}

}  // namespace

void checkEndpoints(CheckResults& results) {
    using State = EndpointFolder::State;
    const std::vector<EndpointFolder> folders = findEndpointFolders();
    if (folders.empty()) return;
    const EndpointFolder* const usable = findLast(folders, State::usable);
    const EndpointFolder* const creatable = findLast(folders, State::creatable);
    const EndpointFolder* const place = usable != nullptr ? usable : creatable;
    for (const EndpointFolder& folder : folders) {
        const std::string finding = folder.path + " cannot be used: " + folder.reason;
        if (folder.state == State::unusable || (folder.state == State::foreign && place == nullptr))
            results.addTrouble(kEndpoint, finding, kRemoveFolder);
        if (folder.state == State::foreign && place != nullptr)
            results.addWarning(kEndpoint,
                               finding + ". The library uses " + place->path +
                                   " instead, which not all sessions of this user can reach",
                               kRemoveFolder);
        if (folder.state == State::usable) results.addOk(kEndpoint, folder.path);
    }
    if (usable == nullptr && creatable != nullptr)
        results.addNote(kEndpoint, creatable->path + " is created when a server is launched");
    if (place == nullptr && findLast(folders, State::foreign) == nullptr &&
        findLast(folders, State::unusable) == nullptr)
        results.addTrouble(kEndpoint, "this user cannot create " + folders.back().path,
                           "Let root allow all users to create files in the folder above it (mode 1777).");
}

void checkLogFolder(CheckResults& results) {
    const std::string folder = withoutLastSlash(logFolderPath(false));
    const std::string existing = nearestFolder(folder);
    if (access(existing.c_str(), W_OK | X_OK) != 0)
        return results.addTrouble(
            kLogs, "this user may not write to " + existing + ": " + std::strerror(errno),
            "Let root create " + folder + " with mode 777, so that failures can be recorded.");
    if (existing != folder) return results.addNote(kLogs, folder + " is created with the first log");
    const std::string log = findErrorLog();
    if (access(log.c_str(), F_OK) == 0 && access(log.c_str(), W_OK) != 0)
        return results.addTrouble(kLogs, "this user may not write to " + log + ": " + std::strerror(errno),
                                  "Let its owner or root allow all users to write to it (mode 666).");
    results.addOk(kLogs, folder);
}

void checkErrorLog(CheckResults& results) {
    const std::string path = findErrorLog();
    if (access(path.c_str(), F_OK) != 0) return results.addOk(kErrorLog, "no failure was recorded");
    if (access(path.c_str(), R_OK) != 0)
        return results.addWarning(kErrorLog, "this user may not read " + path + ": " + std::strerror(errno),
                                  "Let its owner or root allow all users to read it.");
    try {
        std::vector<Properties> entries =
            ConfigFileSystem::readSections(ConfigFileSystem::readText(path), "TIME");
        entries.erase(std::remove_if(entries.begin(), entries.end(),
                                     [](const Properties& entry) { return !entry.contains("TIME"); }),
                      entries.end());
        results.addNote(kErrorLog, path + ": " + countText(entries.size(), "entry", "entries") +
                                       (entries.empty() ? "" : "; the last ones follow"));
        for (size_t index = entries.size() - std::min(entries.size(), kShownEntries); index < entries.size();
             ++index)
            results.addNote(kErrorLog, describeEntry(entries[index]));
    } catch (CPPException* caught) {
        const std::unique_ptr<CPPException> failure(caught);
        results.addWarning(kErrorLog, failure->getMessage(),
                           "Rename the file. The library creates a new one with the next failure.");
    }
}

}  // namespace dovrel::tools
