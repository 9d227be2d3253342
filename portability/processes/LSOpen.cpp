#include <CoreFoundation/CFArray.h>
#include <CoreFoundation/CFURL.h>
#include <CoreServices/LSOpen.h>
#include <CoreServices/MacErrors.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <sstream>
#include <string>

#include "portability/corefoundation/FileURL.h"
#include "portability/posix/Deadline.h"
#include "portability/posix/FileDescriptor.h"
#include "portability/posix/Paths.h"
#include "portability/processes/ApplicationBundle.h"
#include "portability/processes/DetachedProcess.h"
#include "portability/transport/Endpoint.h"

namespace {

using portability::ApplicationBundle;
using portability::Connecting;
using portability::Deadline;
using portability::DetachedProcess;
using portability::EndpointClaim;
using portability::FileDescriptor;

// The numbers of the inherited descriptors in the launched process.
constexpr int kListenDescriptor = 3;
constexpr int kLockDescriptor = 4;

// The time limit for startOrFind. The owner of an endpoint listens, or has released it, within a short time,
// but a busy machine may need longer.
constexpr long kSettleTicks = 5 * 60;
constexpr useconds_t kSettlePause = 1000;

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

bool isListening(OSType signature, const Deadline& deadline) {
    FileDescriptor connection;
    // A time-out shows that there is an owner, whose queue was full for all of that time.
    return portability::connectToEndpoint(signature, deadline, connection) != Connecting::failed;
}

// Launches the application, or finds that it is running.
//
// The endpoint is claimed before the application is launched, for two reasons: requests queue from now
// on, and only one of two launchers can claim the endpoint. If the endpoint has an owner, that process may be
// about to listen or about to exit. The caller must not be told that the application is running before it
// can be reached.
OSStatus startOrFind(const ApplicationBundle& application) {
    const Deadline deadline = Deadline::afterTicks(kSettleTicks);
    do {
        EndpointClaim endpoint;
        switch (EndpointClaim::claim(application.signature, endpoint)) {
            case EndpointClaim::Outcome::claimed: {
                const OSStatus status = start(application, &endpoint);
                if (status != noErr) endpoint.withdraw();
                return status;
            }
            case EndpointClaim::Outcome::inUse:
                if (isListening(application.signature, deadline)) return noErr;
                break;
            case EndpointClaim::Outcome::failed:
                return kLSServerCommunicationErr;
        }
        usleep(kSettlePause);
    } while (!deadline.passed());
    return kLSLaunchInProgressErr;
}

OSStatus launch(const std::string& path) {
    ApplicationBundle application;
    const OSStatus status = portability::readApplication(path, application);
    if (status != noErr) {
        return status;
    }
    if (application.signature == 0) {
        return start(application, nullptr);
    }
    return startOrFind(application);
}

// Returns the path of the opener, or the empty string if the search path does not contain it.
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

// Opens the document. It must begin with a slash or a scheme, so that the opener cannot mistake it for an
// option. `program` receives the path of the opener.
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

// isalpha() has more letters in some locales of the host.
bool isLetter(char character) {
    return (character >= 'A' && character <= 'Z') || (character >= 'a' && character <= 'z');
}

OSStatus openURL(CFURLRef url, std::string& program) {
    if (portability::isFileURL(url)) {
        return openFile(portability::toPath(url), program);
    }
    const std::string text = portability::toText(url);
    const bool hasScheme = text.find(':') != std::string::npos && isLetter(text[0]);
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
    // Copies, because the fields of the packed structure may be misaligned.
    const CFURLRef application = inLaunchSpec->appURL;
    const CFArrayRef items = inLaunchSpec->itemURLs;
    // Applications on this system cannot be told to open documents.
    if (application == nullptr || (items != nullptr && CFArrayGetCount(items) != 0)) {
        return paramErr;
    }
    const std::string path = portability::toPath(application);
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
