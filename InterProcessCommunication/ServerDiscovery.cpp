#include "InterProcessCommunication/ServerDiscovery.h"

#include <cstdlib>
#include <cstring>
#include <string>

#include "InterProcessCommunication/BSDProcessList.h"
#include "platform/AutoreleasePool.h"
#include "platform/CFObject.h"
#include "platform/files/FileURL.h"
#include "platform/files/Places.h"

namespace dovrel {

namespace {

constexpr LSLaunchFlags kServerLaunchFlags =
    kLSLaunchDontAddToRecents | kLSLaunchDontSwitch | kLSLaunchNoParams;

bool isServer(const kinfo_proc& process) {
    return std::strncmp(process.kp_proc.p_comm, kServerProcessName, sizeof process.kp_proc.p_comm) == 0;
}

CFObject<CFURLRef> newServerURL(const FSRef& supportFolder) {
    const CFObject<CFURLRef> folder(CFURLCreateFromFSRef(kCFAllocatorDefault, &supportFolder));
    const std::string path =
        std::string(places::kInstallFolderInApplicationSupport) + places::kServerBundleName;
    return fileURLInFolder(folder, path.c_str());
}

}  // namespace

OSErr FindServerApplication(CFURLRef* application) {
    *application = nullptr;
    FSRef folder;
    const OSErr error = FSFindFolder(kLocalDomain, kApplicationSupportFolderType, kDontCreateFolder, &folder);
    if (error != noErr) return error;
    const CFObject<CFURLRef> bundle = newServerURL(folder);
    FSRef existing;
    if (!bundle || !CFURLGetFSRef(bundle.get(), &existing)) return kServerNotFound;
    *application = static_cast<CFURLRef>(CFRetain(bundle.get()));
    return noErr;
}

bool IsServerRunning() {
    const AutoreleasePool pool;
    kinfo_proc* processes = nullptr;
    size_t count = 0;
    if (GetBSDProcessList(&processes, &count) != 0) return false;
    bool found = false;
    for (size_t i = 0; i < count && !found; ++i)
        found = isServer(processes[i]);
    std::free(processes);
    return found;
}

OSStatus LaunchServer(CFURLRef application) {
    const LSLaunchURLSpec request = {application, nullptr, nullptr, kServerLaunchFlags, nullptr};
    return LSOpenFromURLSpec(&request, nullptr);
}

}  // namespace dovrel
