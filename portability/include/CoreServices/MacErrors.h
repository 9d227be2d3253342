// The platform's result codes that are used or reported here.
#pragma once

enum {
    // Files
    dskFulErr = -34,
    nsvErr = -35,
    ioErr = -36,
    bdNamErr = -37,
    fnOpnErr = -38,
    eofErr = -39,
    tmfoErr = -42,
    fnfErr = -43,
    wPrErr = -44,
    fLckdErr = -45,
    vLckdErr = -46,
    fBsyErr = -47,
    dupFNErr = -48,
    paramErr = -50,
    rfNumErr = -51,
    permErr = -54,
    memFullErr = -108,
    dirNFErr = -120,
    userCanceledErr = -128,
    diffVolErr = -1303,
    errFSBadFSRef = -1401,
    errFSBadForkName = -1402,
    errFSBadInfoBitmap = -1405,
    errFSNotAFolder = -1407,
    errFSNameTooLong = -1410,
    errFSMissingName = -1411,
    errFSRefsDifferent = -1420,
    errFSQuotaExceeded = -1425,
    pathTooLongErr = -2110,
    invalidFolderTypeErr = -4273,
    afpAccessDenied = -5000,
    kPOSIXErrorBase = 100000
};

enum {
    // Processes
    procNotFound = -600,
    appIsDaemon = -606,
    bufferIsSmall = -607,
    noOutstandingHLE = -608,
    connectionInvalid = -609,
    noUserInteractionAllowed = -610
};

enum {
    // Apple events
    errAECoercionFail = -1700,
    errAEDescNotFound = -1701,
    errAECorruptData = -1702,
    errAEWrongDataType = -1703,
    errAENotAEDesc = -1704,
    errAEBadListItem = -1705,
    errAENewerVersion = -1706,
    errAENotAppleEvent = -1707,
    errAEEventNotHandled = -1708,
    errAEReplyNotValid = -1709,
    errAEUnknownSendMode = -1710,
    errAEWaitCanceled = -1711,
    errAETimeout = -1712,
    errAENoUserInteraction = -1713,
    errAEParamMissed = -1715,
    errAEUnknownAddressType = -1716,
    errAEHandlerNotFound = -1717,
    errAEReplyNotArrived = -1718,
    errAEDescIsNull = -1739,
    errAEBufferTooSmall = -1741,
    errAEEventFailed = -10000
};

enum {
    // Launch Services
    kLSAppInTrashErr = -10660,
    kLSExecutableIncorrectFormat = -10661,
    kLSIncompatibleApplicationVersionErr = -10664,
    kLSUnknownErr = -10810,
    kLSNotAnApplicationErr = -10811,
    kLSDataUnavailableErr = -10813,
    kLSApplicationNotFoundErr = -10814,
    kLSLaunchInProgressErr = -10818,
    kLSServerCommunicationErr = -10822,
    kLSIncompatibleSystemVersionErr = -10825,
    kLSNoLaunchPermissionErr = -10826,
    kLSNoExecutableErr = -10827,
    kLSMultipleSessionsNotSupportedErr = -10829
};

enum {
    // Multiprocessing Services
    kMPIterationEndErr = -29275,
    kMPPrivilegedErr = -29276,
    kMPTaskCreatedErr = -29290,
    kMPTaskBlockedErr = -29291,
    kMPTaskStoppedErr = -29292,
    kMPBlueBlockingErr = -29293,
    kMPNanokernelNeedsMemoryErr = -29294,
    kMPDeletedErr = -29295,
    kMPTimeoutErr = -29296,
    kMPTaskAbortedErr = -29297,
    kMPInsufficientResourcesErr = -29298,
    kMPInvalidIDErr = -29299
};
