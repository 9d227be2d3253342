// Receiving Apple events: the table of handlers.
//
// Handlers are called for one event at a time, on the main thread, while the application event loop
// runs there.
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

/// Installs the handler for events with this class and id, and replaces a previous one. typeWildCard matches
/// every class or every id. Pass false for `isSysHandler`. Thread-safe.
extern OSErr AEInstallEventHandler(AEEventClass theAEEventClass, AEEventID theAEEventID,
                                   AEEventHandlerUPP handler, SRefCon handlerRefcon, Boolean isSysHandler);

/// Removes the handler. A null `handler` removes the installed handler; any other value must be the installed
/// handler. Returns errAEHandlerNotFound if there is no such handler. Thread-safe.
extern OSErr AERemoveEventHandler(AEEventClass theAEEventClass, AEEventID theAEEventID,
                                  AEEventHandlerUPP handler, Boolean isSysHandler);

#if defined(__cplusplus)
}  // extern "C"
#endif
