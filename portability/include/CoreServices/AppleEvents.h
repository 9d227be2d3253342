// Receiving Apple events: the table of handlers.
//
// Events reach the handlers one at a time, on the main thread, while the application event loop runs there.
#pragma once

#include <CoreServices/AEDataModel.h>

#if defined(__cplusplus)
extern "C" {
#endif

enum {
    // The core suite
    kCoreEventClass = 'aevt',
    kAEOpenApplication = 'oapp',
    kAEReopenApplication = 'rapp',
    kAEOpenDocuments = 'odoc',
    kAEPrintDocuments = 'pdoc',
    kAEQuitApplication = 'quit',
    kAEAnswer = 'ansr',
    kAEApplicationDied = 'obit',
    kAEShowPreferences = 'pref'
};

typedef SInt8 AEEventSource;
enum {
    // Values of the attribute keyEventSourceAttr
    kAEUnknownSource = 0,
    kAEDirectCall = 1,
    kAESameProcess = 2,
    kAELocalProcess = 3,
    kAERemoteProcess = 4
};

/// Makes `handler` the one for events of that class and id, in place of the one before; typeWildCard stands
/// for any class or any id. Pass false for `isSysHandler`. Any thread.
extern OSErr AEInstallEventHandler(AEEventClass theAEEventClass, AEEventID theAEEventID,
                                   AEEventHandlerUPP handler, SRefCon handlerRefcon, Boolean isSysHandler);

/// Takes the entry out again. A null `handler` removes whichever is there; any other must be the installed
/// one. errAEHandlerNotFound if there is no such entry. Any thread.
extern OSErr AERemoveEventHandler(AEEventClass theAEEventClass, AEEventID theAEEventID,
                                  AEEventHandlerUPP handler, Boolean isSysHandler);

#if defined(__cplusplus)
}  // extern "C"
#endif
