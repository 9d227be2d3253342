// PlatformDouble: stands between the channel and the platform's calls, notes what is asked of the platform,
// and answers in its place where a test says so. Calls for which nothing is set go to the platform.
//
// The linker leads the calls here (--wrap). One double at a time, one thread.
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
    std::optional<std::string> directParameter;  ///< of the type 'TEXT'; none when there is no such parameter
    AESendMode mode = 0;
    AESendPriority priority = -1;
    long timeOutTicks = 0;
    bool hasIdleOrFilter = false;
    bool wantsReply = false;
};

/// An event as it was made.
struct CreatedEvent {
    AEEventClass eventClass = 0;
    AEEventID eventID = 0;
    DescType targetType = 0;
    std::string target;
    AEReturnID returnID = 0;
    AETransactionID transactionID = -1;
};

/// A launch as it was asked for.
struct Launch {
    std::string path;
    LSLaunchFlags flags = 0;
    bool hasOtherFields =
        false;  ///< items, parameters, an asynchronous reference, or a place for the launched URL
};

class PlatformDouble {
  public:
    PlatformDouble();
    PlatformDouble(const PlatformDouble&) = delete;
    PlatformDouble& operator=(const PlatformDouble&) = delete;
    ~PlatformDouble();

    /// What answers a sent event: the result of the send; on success it fills the reply (see answerWith).
    using Server = std::function<OSErr(const SentEvent&, AppleEvent* reply)>;
    Server server;
    /// Fills a reply with this direct parameter; with none for nullopt. Answers noErr.
    static OSErr answerWith(AppleEvent* reply, const std::optional<std::string>& directParameter);

    // Results that are given instead of calling the platform.
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
    /// Replaces single process queries: the error number of the nth, 0 to let it pass.
    std::map<int, int> queryErrors;
    /// Called before each query, with its number from 1.
    std::function<void(int)> beforeQuery;

    // What was asked for.
    std::vector<CreatedEvent> created;
    std::vector<SentEvent> sent;
    std::vector<Launch> launches;
    std::vector<unsigned> sleeps;  ///< microseconds
    int folderLookups = 0;
    int queries = 0;
    /// Descriptors made by the platform and not yet disposed of.
    int livingDescriptors = 0;
};

}  // namespace dovrel::test
