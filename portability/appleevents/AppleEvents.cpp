#include <CoreServices/AppleEvents.h>
#include <CoreServices/MacErrors.h>

#include <new>

#include "portability/appleevents/HandlerTable.h"

using portability::HandlerTable;

OSErr AEInstallEventHandler(AEEventClass theAEEventClass, AEEventID theAEEventID, AEEventHandlerUPP handler,
                            SRefCon handlerRefcon, Boolean isSysHandler) {
    if (handler == nullptr) return paramErr;
    try {
        HandlerTable::shared().install(
            {isSysHandler != 0, theAEEventClass, theAEEventID, handler, handlerRefcon});
    } catch (const std::bad_alloc&) {
        return memFullErr;
    }
    return noErr;
}

OSErr AERemoveEventHandler(AEEventClass theAEEventClass, AEEventID theAEEventID, AEEventHandlerUPP handler,
                           Boolean isSysHandler) {
    const HandlerTable::Entry entry{isSysHandler != 0, theAEEventClass, theAEEventID, handler, SRefCon()};
    if (!HandlerTable::shared().remove(entry)) return errAEHandlerNotFound;
    return noErr;
}
