#include "bundle/FoundationModule.h"

#include <dlfcn.h>

#include <atomic>
#include <mutex>
#include <string>

#include "bundle/LibraryFile.h"
#include "portability/foundation/LogLine.h"
#include "portability/posix/CodePath.h"
#include "portability/posix/Paths.h"

namespace portability {

namespace {

constexpr char kModuleName[] = "/DovrelFoundation";
constexpr char kSymbol[] = "dovrelFoundationEntries";

bool isOfThisVersion(const FoundationEntries& entries) {
    return entries.size == sizeof entries && std::string(entries.version) == DOVREL_VERSION;
}

std::string loaderFailure() {
    const char* const text = dlerror();
    return text != nullptr ? text : "unknown failure of the loader";
}

}  // namespace

const FoundationEntries* loadFoundationModule(const std::string& path, std::string& failure) {
    // The loader would crash if the file ended before one of its segments.
    if (!isCompleteLibrary(path)) {
        failure = path + ": missing or damaged";
        return nullptr;
    }
    void* const module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    const void* const symbol = module != nullptr ? dlsym(module, kSymbol) : nullptr;
    if (symbol == nullptr) {
        failure = loaderFailure();
        return nullptr;
    }
    const auto* const entries = static_cast<const FoundationEntries*>(symbol);
    if (!isOfThisVersion(*entries)) {
        failure = path + ": not of version " DOVREL_VERSION;
        return nullptr;
    }
    return entries;
}

const FoundationEntries* foundationEntries() noexcept {
    static std::atomic<const FoundationEntries*> loaded{nullptr};
    static std::mutex loading;
    if (const FoundationEntries* const entries = loaded.load()) return entries;
    try {
        const std::lock_guard<std::mutex> held(loading);
        if (const FoundationEntries* const entries = loaded.load()) return entries;
        std::string failure;
        const std::string path =
            getParent(findCodeFile(reinterpret_cast<const void*>(&foundationEntries))) + kModuleName;
        const FoundationEntries* const entries = loadFoundationModule(path, failure);
        if (entries != nullptr) {
            entries->useFoundation();
            loaded = entries;
        }
        if (!failure.empty()) writeLogLine(("Dovrel cannot use Foundation. " + failure).c_str());
        return entries;
    } catch (...) {
        return nullptr;  // memory has run out
    }
}

}  // namespace portability
