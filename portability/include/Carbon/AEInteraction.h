// Sending Apple events from an application's main thread.
#pragma once

#include <CoreServices/AEDataModel.h>

#if defined(__cplusplus)
extern "C" {
#endif

typedef struct OpaqueRgnHandle* RgnHandle;

#pragma pack(push, 2)
typedef struct EventRecord {
    UInt16 what;
    unsigned long message;
    UInt32 when;
    Point where;
    UInt16 modifiers;
} EventRecord;
#pragma pack(pop)

typedef Boolean (*AEIdleProcPtr)(EventRecord* theEvent, SInt32* sleepTime, RgnHandle* mouseRgn);
typedef Boolean (*AEFilterProcPtr)(EventRecord* theEvent, SInt32 returnID, AETransactionID transactionID,
                                   const AEAddressDesc* sender);
typedef AEIdleProcPtr AEIdleUPP;
typedef AEFilterProcPtr AEFilterUPP;

/// Sends the event like AESendMessage. While it waits for the reply, it calls `idleProc`, which may be null,
/// with a null event. If `idleProc` returns true, the wait ends with errAEWaitCanceled. `filterProc` may be
/// null. Main thread only.
extern OSErr AESend(const AppleEvent* theAppleEvent, AppleEvent* reply, AESendMode sendMode,
                    AESendPriority sendPriority, SInt32 timeOutInTicks, AEIdleUPP idleProc,
                    AEFilterUPP filterProc);

/// Makes the event that is being handled one without a reply: when its handler has returned, nothing is sent
/// to the sender, which goes on waiting. Called by the handler with its event. AEResumeTheCurrentEvent, which
/// would send the reply later, is not supplied. Returns errAENotAEDesc if this is not an event.
extern OSErr AESuspendTheCurrentEvent(const AppleEvent* theAppleEvent);

#if defined(__cplusplus)
}  // extern "C"

static_assert(sizeof(EventRecord) == (sizeof(void*) == 8 ? 20 : 16), "packed, with a pointer-sized message");
static_assert(alignof(EventRecord) == 2, "packed");
static_assert(offsetof(EventRecord, message) == 2, "the message follows at once");
static_assert(offsetof(EventRecord, when) == 2 + sizeof(void*), "so does the time");
static_assert(offsetof(EventRecord, modifiers) == 10 + sizeof(void*), "packed");
#endif
