// Apple events as data: descriptors, the parameters and attributes of an event.
//
// A descriptor is a type and a block of bytes that only these calls reach. Its owner disposes of it with
// AEDisposeDesc. All calls may be made from any thread; one descriptor may be used by one thread at a time.
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

/// Handles one event. `reply` is null (type typeNull) when the sender wants none. Neither descriptor is the
/// handler's to dispose of. A result other than noErr goes to the sender in the reply, as keyErrorNumber.
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
    // How to send: what becomes of the reply (a field of two bits) ...
    kAENoReply = 0x00000001,
    kAEQueueReply = 0x00000002,
    kAEWaitReply = 0x00000003,
    // ... whether the user may be asked, and how the event is delivered
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
    // Time-outs in place of a number of ticks (1/60 s)
    kAEDefaultTimeout = -1,  ///< about one minute
    kNoTimeOut = -2
};

/// Copies `dataSize` bytes at `dataPtr` into a new descriptor that the caller owns. On an error `result` is
/// null.
extern OSErr AECreateDesc(DescType typeCode, const void* dataPtr, Size dataSize, AEDesc* result);

/// Frees what the descriptor holds and leaves it null. Does nothing to one that is null already.
extern OSErr AEDisposeDesc(AEDesc* theAEDesc);

/// Makes the descriptor null without freeing anything.
extern void AEInitializeDesc(AEDesc* desc);

/// Makes an event that the caller owns, addressed to a copy of `target`; whether the target exists is found
/// out when the event is sent. On an error `result` is null.
extern OSErr AECreateAppleEvent(AEEventClass theAEEventClass, AEEventID theAEEventID,
                                const AEAddressDesc* target, AEReturnID returnID,
                                AETransactionID transactionID, AppleEvent* result);

/// Copies `dataSize` bytes into the event as the parameter (attribute) of that keyword, in place of one that
/// is there.
extern OSErr AEPutParamPtr(AppleEvent* theAppleEvent, AEKeyword theAEKeyword, DescType typeCode,
                           const void* dataPtr, Size dataSize);
extern OSErr AEPutAttributePtr(AppleEvent* theAppleEvent, AEKeyword theAEKeyword, DescType typeCode,
                               const void* dataPtr, Size dataSize);

/// Copies at most `maximumSize` bytes of a parameter (attribute), converted to `desiredType`. `actualSize` is
/// its full size after the conversion: a buffer that is too small is no error. Each of the last four may be
/// null (or 0). On an error (errAEDescNotFound: no such keyword; errAECoercionFail: no such conversion) the
/// outputs are left alone.
extern OSErr AEGetParamPtr(const AppleEvent* theAppleEvent, AEKeyword theAEKeyword, DescType desiredType,
                           DescType* actualType, void* dataPtr, Size maximumSize, Size* actualSize);
extern OSErr AEGetAttributePtr(const AppleEvent* theAppleEvent, AEKeyword theAEKeyword, DescType desiredType,
                               DescType* actualType, void* dataPtr, Size maximumSize, Size* actualSize);

/// The type and size of a parameter as it is stored.
extern OSErr AESizeOfParam(const AppleEvent* theAppleEvent, AEKeyword theAEKeyword, DescType* typeCode,
                           Size* dataSize);

/// The bytes of a plain descriptor: their number, and a copy of at most `maximumSize` of them. No conversion.
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
