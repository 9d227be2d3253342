// PlatformDouble: receives the channel's calls of the platform. It records them, and returns a result of its
// own if a test has set one. Otherwise the call goes to the platform.
//
// The linker redirects the calls (--wrap). Only one double at a time, and only one thread.
#pragma once

#include <Carbon/Carbon.h>
#include <sys/sysctl.h>

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace dovrel::test {

/// An event as it was sent.
struct SentEvent {
    AEEventClass eventClass = 0;
    AEEventID eventID = 0;
    std::optional<std::string> directParameter;  ///< type 'TEXT'; nullopt if there is no such parameter
    AESendMode mode = 0;
    AESendPriority priority = -1;
    long timeOutTicks = 0;
    bool hasIdleOrFilter = false;
    bool wantsReply = false;
};

/// The arguments with which an event was created.
struct CreatedEvent {
    AEEventClass eventClass = 0;
    AEEventID eventID = 0;
    DescType targetType = 0;
    std::string target;
    AEReturnID returnID = 0;
    AETransactionID transactionID = -1;
};

/// The arguments of a launch.
struct Launch {
    std::string path;
    LSLaunchFlags flags = 0;
    bool hasOtherFields =
        false;  ///< items, parameters, an asynchronous reference, or an output for the launched URL
};

class PlatformDouble {
  public:
    PlatformDouble();
    PlatformDouble(const PlatformDouble&) = delete;
    PlatformDouble& operator=(const PlatformDouble&) = delete;
    ~PlatformDouble();

    /// Handles a sent event. Its result is the result of the send; on success it
    /// fills the reply (see answerWith).
    using Server = std::function<OSErr(const SentEvent&, AppleEvent* reply)>;
    Server server;
    /// Fills a reply with this direct parameter, or without one for nullopt. Returns noErr.
    static OSErr answerWith(AppleEvent* reply, const std::optional<std::string>& directParameter);

    // Results that are returned instead of calling the platform.
    std::optional<OSErr> createEventResult;
    std::optional<OSErr> putResult;
    std::optional<OSErr> secondGetResult;
    std::optional<Size> secondGetSize;
    std::optional<OSErr> findFolderResult;
    std::optional<OSErr> currentProcessResult;
    std::optional<ProcessSerialNumber> currentProcess;
    std::optional<bool> folderHasURL;
    std::function<OSStatus(const Launch&)> launch;

    /// The kernel's process table: the short names of its processes.
    std::optional<std::vector<std::string>> processes;
    /// Error numbers of single process queries, by the number of the query. 0 passes the query on.
    std::map<int, int> queryErrors;
    /// Called before each query with its number; the first query is 1.
    std::function<void(int)> beforeQuery;

    // The recorded calls.
    std::vector<CreatedEvent> created;
    std::vector<SentEvent> sent;
    std::vector<Launch> launches;
    std::vector<unsigned> sleeps;  ///< microseconds
    int folderLookups = 0;
    int queries = 0;
    /// Descriptors that the platform created and that have not been disposed of yet.
    int livingDescriptors = 0;
};

}  // namespace dovrel::test
