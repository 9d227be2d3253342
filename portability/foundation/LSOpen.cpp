#include <CoreFoundation/CFArray.h>
#include <CoreFoundation/CFURL.h>
#include <CoreServices/LSOpen.h>
#include <CoreServices/MacErrors.h>
#include <unistd.h>

#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <sstream>
#include <string>

#include "events/EventEndpoint.h"
#include "foundation/ApplicationBundle.h"
#include "foundation/DetachedProcess.h"
#include "foundation/FileURL.h"
#include "foundation/Paths.h"

namespace {

using portability::ApplicationBundle;
using portability::DetachedProcess;
using portability::EndpointClaim;

// Where the launched process finds what it inherits.
constexpr int kListenDescriptor = 3;
constexpr int kLockDescriptor = 4;

// The program that knows the desktop's preferred applications.
constexpr const char* kOpener = "xdg-open";

OSStatus launchStatus(int systemError) {
    switch (systemError) {
        case 0:
            return noErr;
        case EACCES:
        case EPERM:
            return kLSNoLaunchPermissionErr;
        case ENOEXEC:
        case ELIBBAD:
            return kLSExecutableIncorrectFormat;
        case ENOMEM:
            return memFullErr;
        default:
            return kLSUnknownErr;
    }
}

OSStatus start(const ApplicationBundle& application, const EndpointClaim* endpoint) {
    DetachedProcess process{application.executable, {application.executable}, {}, {}};
    if (endpoint == nullptr) {
        process.environment = portability::environmentWithout(std::string());
    } else {
        const std::string announcement =
            EndpointClaim::inheritanceEntry(application.signature, kListenDescriptor, kLockDescriptor);
        process.environment = portability::environmentWithout(announcement.substr(0, announcement.find('=')));
        process.environment.push_back(announcement);
        process.descriptors = {endpoint->listenDescriptor(), endpoint->lockDescriptor()};
    }
    return launchStatus(portability::startDetached(process));
}

// The endpoint is claimed before the application exists: so that events queue from now on, and so that of two
// launchers one finds it taken.
OSStatus launch(const std::string& path) {
    ApplicationBundle application;
    const OSStatus status = portability::readApplication(path, application);
    if (status != noErr) {
        return status;
    }
    if (application.signature == 0) {
        return start(application, nullptr);
    }
    EndpointClaim endpoint;
    switch (EndpointClaim::claim(application.signature, endpoint)) {
        case EndpointClaim::Outcome::claimed:
            return start(application, &endpoint);
        case EndpointClaim::Outcome::inUse:
            return noErr;
        case EndpointClaim::Outcome::failed:
            break;
    }
    return kLSServerCommunicationErr;
}

// Empty when there is none in the search path.
std::string findOpener() {
    const char* searchPath = secure_getenv("PATH");
    std::istringstream folders(searchPath == nullptr ? "/usr/bin:/bin" : searchPath);
    for (std::string folder; std::getline(folders, folder, ':');) {
        const std::string candidate = folder + '/' + kOpener;
        const bool isAbsolute = !folder.empty() && folder.front() == '/';
        if (isAbsolute && access(candidate.c_str(), X_OK) == 0 && !portability::isFolder(candidate)) {
            return candidate;
        }
    }
    return std::string();
}

// `document` begins with a slash or a scheme, so the opener cannot take it for an option. `program` receives
// what opens it.
OSStatus openDocument(const std::string& document, std::string& program) {
    program = findOpener();
    if (program.empty()) {
        return kLSApplicationNotFoundErr;
    }
    return launchStatus(portability::startDetached(
        {program, {kOpener, document}, portability::environmentWithout(std::string()), {}}));
}

OSStatus openFile(const std::string& path, std::string& program) {
    if (!portability::isThere(path)) {
        return fnfErr;
    }
    const OSStatus status = portability::isFolder(path) ? launch(path) : OSStatus{kLSNotAnApplicationErr};
    if (status == kLSNotAnApplicationErr) {
        return openDocument(path, program);
    }
    program = path;
    return status;
}

OSStatus openURL(CFURLRef url, std::string& program) {
    if (portability::isFileURL(url)) {
        return openFile(portability::pathOf(url), program);
    }
    const std::string text = portability::textOf(url);
    const bool hasScheme =
        text.find(':') != std::string::npos && std::isalpha(static_cast<unsigned char>(text[0])) != 0;
    return hasScheme ? openDocument(text, program) : OSStatus{kLSApplicationNotFoundErr};
}

void handOver(const std::string& program, CFURLRef* launched) {
    if (launched != nullptr) {
        *launched = portability::createFileURL(program, portability::isFolder(program));
    }
}

}  // namespace

OSStatus LSOpenFromURLSpec(const LSLaunchURLSpec* inLaunchSpec, CFURLRef* outLaunchedURL) {
    if (inLaunchSpec == nullptr) {
        return paramErr;
    }
    // Copies, because the fields of the packed record may be misaligned.
    const CFURLRef application = inLaunchSpec->appURL;
    const CFArrayRef items = inLaunchSpec->itemURLs;
    // No application here can be told what to open.
    if (application == nullptr || (items != nullptr && CFArrayGetCount(items) != 0)) {
        return paramErr;
    }
    const std::string path = portability::pathOf(application);
    const OSStatus status = launch(path);
    if (status == noErr) {
        handOver(path, outLaunchedURL);
    }
    return status;
}

OSStatus LSOpenCFURLRef(CFURLRef inURL, CFURLRef* outLaunchedURL) {
    if (inURL == nullptr) {
        return paramErr;
    }
    std::string program;
    const OSStatus status = openURL(inURL, program);
    if (status == noErr) {
        handOver(program, outLaunchedURL);
    }
    return status;
}
