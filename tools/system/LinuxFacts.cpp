#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "bundle/FoundationModule.h"
#include "bundle/LibraryFile.h"
#include "portability/posix/SystemRoot.h"
#include "portability/processes/ProcessTable.h"
#include "portability/transport/EndpointFolder.h"
#include "tools/Subcommand.h"
#include "tools/calls/LoadedLibrary.h"
#include "tools/system/SystemFacts.h"

namespace dovrel::tools {

namespace {

namespace fs = std::filesystem;

bool canCreateIn(const portability::EndpointPlace& place) {
    struct stat parent;
    if (stat(place.parent.c_str(), &parent) != 0 || !S_ISDIR(parent.st_mode)) return false;
    const bool isAllowed = !place.isPrivate || parent.st_uid == geteuid();
    return isAllowed && access(place.parent.c_str(), W_OK | X_OK) == 0;
}

EndpointFolder examine(const portability::EndpointPlace& place) {
    using State = EndpointFolder::State;
    const std::string path = place.parent + '/' + place.name;
    portability::FileDescriptor opened;
    const portability::FolderState state = portability::openEndpointFolder(place, opened);
    const int error = errno;
    if (state == portability::FolderState::open) return {path, State::usable, ""};
    if (state == portability::FolderState::failed)
        return {path, State::unusable, error == EPERM ? "other users may enter it" : std::strerror(error)};
    struct stat status;
    if (lstat(path.c_str(), &status) == 0)
        return {path, State::foreign,
                "it belongs to the user with the number " + std::to_string(status.st_uid)};
    return {path, canCreateIn(place) ? State::creatable : State::missing, ""};
}

}  // namespace

bool isRunning(pid_t process) {
    return portability::findProcess(process).has_value();
}

std::string systemRootPath() {
    return portability::systemRoot();
}

std::vector<ProgramProcess> findProcessesOf(const std::string& program) {
    std::vector<ProgramProcess> found;
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator("/proc", error)) {
        const std::string name = entry.path().filename();
        if (name.find_first_not_of("0123456789") != std::string::npos) continue;
        const auto process = portability::findProcess(std::stoi(name));
        if (!process || process->file != program) continue;
        found.push_back({process->id, process->user, process->state == 'T' || process->state == 't'});
    }
    return found;
}

std::vector<EndpointFolder> findEndpointFolders() {
    std::vector<EndpointFolder> folders;
    for (const portability::EndpointPlace& place : portability::endpointPlaces(systemRootPath()))
        folders.push_back(examine(place));
    return folders;
}

bool isCompleteLibrary(const std::string& path) {
    return portability::isCompleteLibrary(path);
}

std::string makeSystemReport() {
    std::string failure;
    const std::string path = installedBundlePath() + "/Contents/MacOS/DovrelFoundation";
    const portability::FoundationEntries* const entries = portability::loadFoundationModule(path, failure);
    if (entries == nullptr) throw ToolFailure("the report needs the installed library: " + failure);
    entries->useFoundation();
    return entries->systemReport();
}

}  // namespace dovrel::tools
