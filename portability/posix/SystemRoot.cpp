#include "portability/posix/SystemRoot.h"

#include <array>
#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "portability/posix/StateFolder.h"

namespace portability {
namespace {

constexpr std::array<std::string_view, 3> kFixedPlaces = {"/Library", "/System", "/Applications"};
constexpr std::string_view kLogs = "/Library/Logs";

// The root that was chosen when the library was configured; empty for "/".
constexpr char kConfiguredRoot[] = DOVREL_CONFIGURED_ROOT;

// Returns the value of POS_SYSTEM_ROOT, or null if it is not an absolute path.
const char* rootOfEnvironment() {
    // secure_getenv, because the caller of a set-user-ID program must not choose which servers it uses.
    const char* const root = secure_getenv("POS_SYSTEM_ROOT");
    return root != nullptr && root[0] == '/' ? root : nullptr;
}

// The users of a distribution cannot write into its folders, so their logs are not below a configured root.
bool areLogsOfTheUser() {
    return *kConfiguredRoot != '\0' && rootOfEnvironment() == nullptr;
}

bool isAtOrBelow(std::string_view path, std::string_view folder) {
    return path.substr(0, folder.size()) == folder &&
           (path.size() == folder.size() || path[folder.size()] == '/');
}

bool isPlatformPlace(std::string_view path) {
    for (std::string_view place : kFixedPlaces) {
        if (isAtOrBelow(path, place)) {
            return true;
        }
    }
    return false;
}

std::string canonicalPath(const char* path) {
    std::error_code error;
    // weakly_canonical also accepts a root that does not exist yet, so that a host may create it later.
    std::filesystem::path canonical = std::filesystem::weakly_canonical(path, error);
    if (error) {
        canonical = std::filesystem::path(path).lexically_normal();
    }
    std::string result = canonical.string();
    while (result.size() > 1 && result.back() == '/') {
        result.pop_back();
    }
    return result;
}

}  // namespace

std::string systemRoot() {
    const char* const root = rootOfEnvironment();
    if (root != nullptr) {
        return canonicalPath(root);
    }
    return *kConfiguredRoot == '\0' ? "/" : canonicalPath(kConfiguredRoot);
}

std::string inSystemRoot(const std::string& path) {
    // Extra leading slashes are ignored: "//Library" is the same place as "/Library".
    const std::size_t name = path.find_first_not_of('/');
    if (name == 0 || name == std::string::npos) {
        return path;
    }
    const std::string_view place = std::string_view(path).substr(name - 1);
    if (!isPlatformPlace(place)) {
        return path;
    }
    const std::string root = systemRoot();
    if (root == "/" || isAtOrBelow(place, root)) {
        return path;
    }
    if (isAtOrBelow(place, kLogs) && areLogsOfTheUser()) {
        const std::string folder = makeStateFolder();
        if (!folder.empty()) return folder + std::string(place.substr(kLogs.size()));
    }
    return root + std::string(place);
}

std::vector<std::string> fixedPlaces() {
    const std::string root = systemRoot();
    std::vector<std::string> places;
    for (const std::string_view place : kFixedPlaces) {
        places.push_back((root == "/" ? std::string() : root) + std::string(place));
    }
    return places;
}

bool isInFixedPlace(const std::string& path) {
    const std::string root = systemRoot();
    if (root == "/") {
        return isPlatformPlace(path);
    }
    return isAtOrBelow(path, root) && isPlatformPlace(std::string_view(path).substr(root.size()));
}

}  // namespace portability
