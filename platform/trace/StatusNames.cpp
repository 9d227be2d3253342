#include "platform/trace/StatusNames.h"

#include <CoreServices/CoreServices.h>

namespace dovrel {

namespace {

struct NamedStatus {
    int32_t status;
    const char* name;
};

#define NAMED(status) \
    { status, #status }

constexpr NamedStatus kNamedStatuses[] = {
    // File Manager
    NAMED(dskFulErr),
    NAMED(nsvErr),
    NAMED(ioErr),
    NAMED(bdNamErr),
    NAMED(fnOpnErr),
    NAMED(eofErr),
    NAMED(tmfoErr),
    NAMED(fnfErr),
    NAMED(wPrErr),
    NAMED(fLckdErr),
    NAMED(vLckdErr),
    NAMED(fBsyErr),
    NAMED(dupFNErr),
    NAMED(paramErr),
    NAMED(rfNumErr),
    NAMED(permErr),
    NAMED(memFullErr),
    NAMED(dirNFErr),
    NAMED(userCanceledErr),
    NAMED(diffVolErr),
    NAMED(errFSBadFSRef),
    NAMED(errFSBadForkName),
    NAMED(errFSBadInfoBitmap),
    NAMED(errFSNotAFolder),
    NAMED(errFSNameTooLong),
    NAMED(errFSMissingName),
    NAMED(errFSRefsDifferent),
    NAMED(errFSQuotaExceeded),
    NAMED(pathTooLongErr),
    NAMED(invalidFolderTypeErr),
    NAMED(afpAccessDenied),

    // Process Manager
    NAMED(procNotFound),
    NAMED(appIsDaemon),
    NAMED(bufferIsSmall),
    NAMED(noOutstandingHLE),
    NAMED(connectionInvalid),
    NAMED(noUserInteractionAllowed),

    // Apple events
    NAMED(errAECoercionFail),
    NAMED(errAEDescNotFound),
    NAMED(errAECorruptData),
    NAMED(errAEWrongDataType),
    NAMED(errAENotAEDesc),
    NAMED(errAEBadListItem),
    NAMED(errAENewerVersion),
    NAMED(errAENotAppleEvent),
    NAMED(errAEEventNotHandled),
    NAMED(errAEReplyNotValid),
    NAMED(errAEUnknownSendMode),
    NAMED(errAEWaitCanceled),
    NAMED(errAETimeout),
    NAMED(errAENoUserInteraction),
    NAMED(errAEParamMissed),
    NAMED(errAEUnknownAddressType),
    NAMED(errAEHandlerNotFound),
    NAMED(errAEReplyNotArrived),
    NAMED(errAEDescIsNull),
    NAMED(errAEBufferTooSmall),
    NAMED(errAEEventFailed),
    // Given as numbers: the headers of macOS 10.7 do not define them, but later systems return them.
    {-1742, "errAETargetAddressNotPermitted"},
    {-1743, "errAEEventNotPermitted"},
    {-1744, "errAEEventWouldRequireUserConsent"},

    // Launch Services
    NAMED(kLSAppInTrashErr),
    NAMED(kLSExecutableIncorrectFormat),
    NAMED(kLSIncompatibleApplicationVersionErr),
    NAMED(kLSUnknownErr),
    NAMED(kLSNotAnApplicationErr),
    NAMED(kLSDataUnavailableErr),
    NAMED(kLSApplicationNotFoundErr),
    NAMED(kLSLaunchInProgressErr),
    NAMED(kLSServerCommunicationErr),
    NAMED(kLSIncompatibleSystemVersionErr),
    NAMED(kLSNoLaunchPermissionErr),
    NAMED(kLSNoExecutableErr),
    NAMED(kLSMultipleSessionsNotSupportedErr),

    // Multiprocessing Services
    NAMED(kMPIterationEndErr),
    NAMED(kMPPrivilegedErr),
    NAMED(kMPTaskCreatedErr),
    NAMED(kMPTaskBlockedErr),
    NAMED(kMPTaskStoppedErr),
    NAMED(kMPBlueBlockingErr),
    NAMED(kMPNanokernelNeedsMemoryErr),
    NAMED(kMPDeletedErr),
    NAMED(kMPTimeoutErr),
    NAMED(kMPTaskAbortedErr),
    NAMED(kMPInsufficientResourcesErr),
    NAMED(kMPInvalidIDErr),
};

#undef NAMED

/// OSStatus functions return errno values as kPOSIXErrorBase + errno.
constexpr int32_t kLargestErrno = 999;

}  // namespace

const char* statusName(int32_t status) {
    for (const NamedStatus& named : kNamedStatuses)
        if (named.status == status) return named.name;
    return nullptr;
}

std::string statusText(int32_t status) {
    const std::string number = std::to_string(status);
    if (const char* const name = statusName(status)) return number + " (" + name + ")";
    if (status > kPOSIXErrorBase && status <= kPOSIXErrorBase + kLargestErrno)
        return number + " (errno " + std::to_string(status - kPOSIXErrorBase) + ")";
    return number;
}

}  // namespace dovrel
