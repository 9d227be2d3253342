// The data of Apple events: descriptors, and the parameters and attributes of an event.
//
// A descriptor consists of a type and a block of bytes, which only these functions can access. Its owner
// disposes of it with AEDisposeDesc. All functions may be called on any thread, but only one thread at a time
// may use a descriptor.
#pragma once

#include <CoreServices/MacTypes.h>

#if defined(__cplusplus)
extern "C" {
#endif

typedef UInt32 DescType;
typedef UInt32 AEKeyword;
typedef UInt32 AEEventClass;
typedef UInt32 AEEventID;
typedef SInt16 AEReturnID;
typedef SInt32 AETransactionID;
typedef SInt32 AESendMode;
typedef SInt16 AESendPriority;

typedef struct OpaqueAEDataStorageType* AEDataStorageType;
typedef AEDataStorageType* AEDataStorage;

#pragma pack(push, 2)
typedef struct AEDesc {
    DescType descriptorType;
    AEDataStorage dataHandle;
} AEDesc;

typedef struct AEKeyDesc {
    AEKeyword descKey;
    AEDesc descContent;
} AEKeyDesc;
#pragma pack(pop)

typedef AEDesc* AEDescPtr;
typedef AEDesc AEAddressDesc;
typedef AEDesc AEDescList;
typedef AEDescList AERecord;
typedef AERecord AppleEvent;
typedef AppleEvent* AppleEventPtr;

/// Handles one event. `reply` is null (type typeNull) if the sender wants no reply. The handler does not own
/// the descriptors. If it returns an error, the sender receives it in the reply as keyErrorNumber.
typedef OSErr (*AEEventHandlerProcPtr)(const AppleEvent* event, AppleEvent* reply, SRefCon refcon);
typedef AEEventHandlerProcPtr AEEventHandlerUPP;

enum {
    // Types of descriptors
    typeNull = 'null',
    typeWildCard = '****',
    typeChar = 'TEXT',
    typeUTF8Text = 'utf8',
    typeUnicodeText = 'utxt',
    typeCString = 'cstr',
    typeBoolean = 'bool',
    typeTrue = 'true',
    typeFalse = 'fals',
    typeSInt16 = 'shor',
    typeSInt32 = 'long',
    typeUInt32 = 'magn',
    typeSInt64 = 'comp',
    typeIEEE64BitFloatingPoint = 'doub',
    typeEnumerated = 'enum',
    typeType = 'type',
    typeKeyword = 'keyw',
    typeAEList = 'list',
    typeAERecord = 'reco',
    typeAppleEvent = 'aevt'
};

enum {
    // Types of addresses
    typeApplSignature = 'sign',
    typeProcessSerialNumber = 'psn ',
    typeKernelProcessID = 'kpid',
    typeApplicationBundleID = 'bund',
    typeApplicationURL = 'aprl',
    typeMachPort = 'port'
};

enum {
    // Parameters
    keyDirectObject = '----',
    keyErrorNumber = 'errn',
    keyErrorString = 'errs',
    keyProcessSerialNumber = 'psn ',
    keyPreDispatch = 'phac'
};

enum {
    // Attributes
    keyTransactionIDAttr = 'tran',
    keyReturnIDAttr = 'rtid',
    keyEventClassAttr = 'evcl',
    keyEventIDAttr = 'evid',
    keyAddressAttr = 'addr',
    keyTimeoutAttr = 'timo',
    keyInteractLevelAttr = 'inte',
    keyEventSourceAttr = 'esrc',
    keyMissedKeywordAttr = 'miss',
    keyOriginalAddressAttr = 'from',
    keyReplyRequestedAttr = 'repq',
    keySenderPIDAttr = 'spid'
};

enum { kAutoGenerateReturnID = -1, kAnyTransactionID = 0 };

enum {
    // Send modes: how the reply is treated (a field of two bits) ...
    kAENoReply = 0x00000001,
    kAEQueueReply = 0x00000002,
    kAEWaitReply = 0x00000003,
    // ... whether the receiver may interact with the user, and how the event is delivered
    kAENeverInteract = 0x00000010,
    kAECanInteract = 0x00000020,
    kAEAlwaysInteract = 0x00000030,
    kAECanSwitchLayer = 0x00000040,
    kAEDontReconnect = 0x00000080,
    kAEWantReceipt = 0x00000200,
    kAEDontRecord = 0x00001000,
    kAEDontExecute = 0x00002000,
    kAEProcessNonReplyEvents = 0x00008000,
    kAEDoNotAutomaticallyAddAnnotationsToEvent = 0x00010000
};

enum { kAENormalPriority = 0x00000000, kAEHighPriority = 0x00000001 };

enum {
    // Special time-outs, instead of a number of ticks (1/60 s)
    kAEDefaultTimeout = -1,  ///< about one minute
    kNoTimeOut = -2
};

/// Creates a descriptor with a copy of `dataSize` bytes at `dataPtr`. The caller owns it. On an error
/// `result` is null.
extern OSErr AECreateDesc(DescType typeCode, const void* dataPtr, Size dataSize, AEDesc* result);

/// Frees the descriptor's data and makes the descriptor null. Does nothing if it is already null.
extern OSErr AEDisposeDesc(AEDesc* theAEDesc);

/// Makes the descriptor null without freeing anything.
extern void AEInitializeDesc(AEDesc* desc);

/// Creates an event with a copy of `target` as its address. The caller owns it. Whether the target exists is
/// not checked before the event is sent. On an error `result` is null.
extern OSErr AECreateAppleEvent(AEEventClass theAEEventClass, AEEventID theAEEventID,
                                const AEAddressDesc* target, AEReturnID returnID,
                                AETransactionID transactionID, AppleEvent* result);

/// Copies `dataSize` bytes into the event as the parameter (or attribute) with this keyword. Replaces an
/// existing one.
extern OSErr AEPutParamPtr(AppleEvent* theAppleEvent, AEKeyword theAEKeyword, DescType typeCode,
                           const void* dataPtr, Size dataSize);
extern OSErr AEPutAttributePtr(AppleEvent* theAppleEvent, AEKeyword theAEKeyword, DescType typeCode,
                               const void* dataPtr, Size dataSize);

/// Copies at most `maximumSize` bytes of a parameter (or attribute), converted to `desiredType`. `actualSize`
/// is set to its full size after the conversion; a buffer that is too small is not an error. The last four
/// arguments may be null (or 0).
///
/// On an error the outputs are unchanged. Errors: errAEDescNotFound if there is no such keyword,
/// errAECoercionFail if the conversion is not possible.
extern OSErr AEGetParamPtr(const AppleEvent* theAppleEvent, AEKeyword theAEKeyword, DescType desiredType,
                           DescType* actualType, void* dataPtr, Size maximumSize, Size* actualSize);
extern OSErr AEGetAttributePtr(const AppleEvent* theAppleEvent, AEKeyword theAEKeyword, DescType desiredType,
                               DescType* actualType, void* dataPtr, Size maximumSize, Size* actualSize);

/// Writes the stored type and the size in bytes of a parameter.
extern OSErr AESizeOfParam(const AppleEvent* theAppleEvent, AEKeyword theAEKeyword, DescType* typeCode,
                           Size* dataSize);

/// Functions for the bytes of a plain descriptor. AEGetDescDataSize returns their number. AEGetDescData
/// copies at most `maximumSize` of them. The bytes are not converted.
extern Size AEGetDescDataSize(const AEDesc* theAEDesc);
extern OSErr AEGetDescData(const AEDesc* theAEDesc, void* dataPtr, Size maximumSize);

#if defined(__cplusplus)
}  // extern "C"

static_assert(sizeof(AEDesc) == 4 + sizeof(void*),
              "a descriptor is packed: 12 bytes with 64-bit pointers, else 8");
static_assert(sizeof(AEKeyDesc) == 8 + sizeof(void*), "packed: 16 bytes with 64-bit pointers, else 12");
static_assert(alignof(AEDesc) == 2 && alignof(AEKeyDesc) == 2, "packed");
static_assert(offsetof(AEDesc, dataHandle) == 4, "the handle follows the type at once");
static_assert(offsetof(AEKeyDesc, descContent) == 4, "the descriptor follows the keyword at once");
static_assert(sizeof(DescType) == 4 && sizeof(AEReturnID) == 2 && sizeof(AETransactionID) == 4,
              "fixed widths");
static_assert(keyDirectObject == 0x2D2D2D2D && typeAppleEvent == 0x61657674,
              "first character in the highest byte");
#endif
