#include "tests/InterProcessCommunication/PlatformDouble.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

using dovrel::test::CreatedEvent;
using dovrel::test::Launch;
using dovrel::test::PlatformDouble;
using dovrel::test::SentEvent;

extern "C" {
OSErr __real_AECreateDesc(DescType, const void*, Size, AEDesc*);
OSErr __real_AEDisposeDesc(AEDesc*);
OSErr __real_AECreateAppleEvent(AEEventClass, AEEventID, const AEAddressDesc*, AEReturnID, AETransactionID,
                                AppleEvent*);
OSErr __real_AEPutParamPtr(AppleEvent*, AEKeyword, DescType, const void*, Size);
OSErr __real_AEGetParamPtr(const AppleEvent*, AEKeyword, DescType, DescType*, void*, Size, Size*);
OSErr __real_AESend(const AppleEvent*, AppleEvent*, AESendMode, AESendPriority, SInt32, AEIdleUPP,
                    AEFilterUPP);
OSStatus __real_AESendMessage(const AppleEvent*, AppleEvent*, AESendMode, long);
OSErr __real_FSFindFolder(FSVolumeRefNum, OSType, Boolean, FSRef*);
CFURLRef __real_CFURLCreateFromFSRef(CFAllocatorRef, const FSRef*);
OSStatus __real_LSOpenFromURLSpec(const LSLaunchURLSpec*, CFURLRef*);
OSErr __real_GetCurrentProcess(ProcessSerialNumber*);
int __real_sysctl(int*, unsigned, void*, size_t*, void*, size_t);
int __real_usleep(useconds_t);
}

namespace dovrel::test {

namespace {

PlatformDouble* currentDouble = nullptr;

UInt32 readCode(const AppleEvent* event, AEKeyword attribute) {
    UInt32 code = 0;
    AEGetAttributePtr(event, attribute, typeType, nullptr, &code, sizeof code, nullptr);
    return code;
}

std::optional<std::string> readDirectParameter(const AppleEvent* event) {
    Size size = 0;
    DescType type = typeNull;
    if (__real_AEGetParamPtr(event, keyDirectObject, typeWildCard, &type, nullptr, 0, &size) != noErr)
        return std::nullopt;
    if (type != typeChar) return std::nullopt;
    std::string bytes(static_cast<size_t>(size), '\0');
    __real_AEGetParamPtr(event, keyDirectObject, typeChar, nullptr, bytes.data(), size, nullptr);
    return bytes;
}

std::string toPath(CFURLRef url) {
    UInt8 path[1024] = {};
    CFURLGetFileSystemRepresentation(url, true, path, sizeof path);
    return reinterpret_cast<const char*>(path);
}

SentEvent describe(const AppleEvent* event, AESendMode mode, long timeOutTicks) {
    SentEvent sent;
    sent.eventClass = readCode(event, keyEventClassAttr);
    sent.eventID = readCode(event, keyEventIDAttr);
    sent.directParameter = readDirectParameter(event);
    sent.mode = mode;
    sent.timeOutTicks = timeOutTicks;
    return sent;
}

// Fills the block with the kernel's records for processes with these names.
int answerQuery(const std::vector<std::string>& names, void* block, size_t* length) {
    const size_t needed = names.size() * sizeof(kinfo_proc);
    if (block == nullptr) {
        *length = needed + sizeof(kinfo_proc);
        return 0;
    }
    auto* const records = static_cast<kinfo_proc*>(block);
    for (size_t i = 0; i < names.size(); ++i) {
        records[i] = kinfo_proc();
        std::strncpy(records[i].kp_proc.p_comm, names[i].c_str(), MAXCOMLEN);
    }
    *length = needed;
    return 0;
}

}  // namespace

PlatformDouble::PlatformDouble() {
    currentDouble = this;
}

PlatformDouble::~PlatformDouble() {
    currentDouble = nullptr;
}

OSErr PlatformDouble::answerWith(AppleEvent* reply, const std::optional<std::string>& directParameter) {
    const AEAddressDesc nobody = {typeNull, nullptr};
    AECreateAppleEvent(kCoreEventClass, kAEAnswer, &nobody, kAutoGenerateReturnID, kAnyTransactionID, reply);
    if (directParameter)
        __real_AEPutParamPtr(reply, keyDirectObject, typeChar, directParameter->data(),
                             static_cast<Size>(directParameter->size()));
    return noErr;
}

}  // namespace dovrel::test

using dovrel::test::currentDouble;

extern "C" {

OSErr __wrap_AECreateDesc(DescType type, const void* data, Size size, AEDesc* result) {
    const OSErr error = __real_AECreateDesc(type, data, size, result);
    if (currentDouble != nullptr && error == noErr) ++currentDouble->livingDescriptors;
    return error;
}

OSErr __wrap_AEDisposeDesc(AEDesc* descriptor) {
    if (currentDouble != nullptr && descriptor->descriptorType != typeNull)
        --currentDouble->livingDescriptors;
    return __real_AEDisposeDesc(descriptor);
}

OSErr __wrap_AECreateAppleEvent(AEEventClass eventClass, AEEventID eventID, const AEAddressDesc* target,
                                AEReturnID returnID, AETransactionID transactionID, AppleEvent* result) {
    PlatformDouble* const platform = currentDouble;
    if (platform != nullptr && target->descriptorType != typeNull) {
        CreatedEvent event{eventClass, eventID, target->descriptorType, "", returnID, transactionID};
        event.target.resize(static_cast<size_t>(AEGetDescDataSize(target)));
        AEGetDescData(target, event.target.data(), static_cast<Size>(event.target.size()));
        platform->created.push_back(event);
        if (platform->createEventResult) return *platform->createEventResult;
    }
    const OSErr error =
        __real_AECreateAppleEvent(eventClass, eventID, target, returnID, transactionID, result);
    if (platform != nullptr && error == noErr) ++platform->livingDescriptors;
    return error;
}

OSErr __wrap_AEPutParamPtr(AppleEvent* event, AEKeyword keyword, DescType type, const void* data, Size size) {
    if (currentDouble != nullptr && currentDouble->putResult) return *currentDouble->putResult;
    return __real_AEPutParamPtr(event, keyword, type, data, size);
}

OSErr __wrap_AEGetParamPtr(const AppleEvent* event, AEKeyword keyword, DescType desired, DescType* actual,
                           void* data, Size room, Size* size) {
    if (currentDouble != nullptr && data != nullptr && currentDouble->secondGetResult)
        return *currentDouble->secondGetResult;
    const OSErr error = __real_AEGetParamPtr(event, keyword, desired, actual, data, room, size);
    if (currentDouble != nullptr && data != nullptr && size != nullptr && currentDouble->secondGetSize)
        *size = *currentDouble->secondGetSize;
    return error;
}

OSErr __wrap_AESend(const AppleEvent* event, AppleEvent* reply, AESendMode mode, AESendPriority priority,
                    SInt32 timeOutTicks, AEIdleUPP idle, AEFilterUPP filter) {
    PlatformDouble* const platform = currentDouble;
    if (platform == nullptr || !platform->server)
        return __real_AESend(event, reply, mode, priority, timeOutTicks, idle, filter);
    SentEvent sent = dovrel::test::describe(event, mode, timeOutTicks);
    sent.priority = priority;
    sent.hasIdleOrFilter = idle != nullptr || filter != nullptr;
    sent.wantsReply = reply != nullptr;
    platform->sent.push_back(sent);
    return platform->server(sent, reply);
}

OSStatus __wrap_AESendMessage(const AppleEvent* event, AppleEvent* reply, AESendMode mode,
                              long timeOutTicks) {
    PlatformDouble* const platform = currentDouble;
    if (platform == nullptr || !platform->server)
        return __real_AESendMessage(event, reply, mode, timeOutTicks);
    SentEvent sent = dovrel::test::describe(event, mode, timeOutTicks);
    sent.wantsReply = reply != nullptr;
    platform->sent.push_back(sent);
    return platform->server(sent, reply);
}

OSErr __wrap_FSFindFolder(FSVolumeRefNum volume, OSType type, Boolean create, FSRef* folder) {
    if (currentDouble != nullptr) {
        ++currentDouble->folderLookups;
        EXPECT_TRUE(volume == kLocalDomain && type == kApplicationSupportFolderType && !create);
        if (currentDouble->findFolderResult && *currentDouble->findFolderResult != noErr)
            return *currentDouble->findFolderResult;
    }
    return __real_FSFindFolder(volume, type, create, folder);
}

CFURLRef __wrap_CFURLCreateFromFSRef(CFAllocatorRef allocator, const FSRef* folder) {
    if (currentDouble != nullptr && !currentDouble->folderHasURL.value_or(true)) return nullptr;
    return __real_CFURLCreateFromFSRef(allocator, folder);
}

OSStatus __wrap_LSOpenFromURLSpec(const LSLaunchURLSpec* spec, CFURLRef* launched) {
    PlatformDouble* const platform = currentDouble;
    if (platform == nullptr || !platform->launch) return __real_LSOpenFromURLSpec(spec, launched);
    Launch launch;
    launch.path = dovrel::test::toPath(spec->appURL);
    launch.flags = spec->launchFlags;
    launch.hasOtherFields = spec->itemURLs != nullptr || spec->passThruParams != nullptr ||
                            spec->asyncRefCon != nullptr || launched != nullptr;
    platform->launches.push_back(launch);
    return platform->launch(launch);
}

OSErr __wrap_GetCurrentProcess(ProcessSerialNumber* number) {
    if (currentDouble != nullptr && currentDouble->currentProcessResult)
        return *currentDouble->currentProcessResult;
    if (currentDouble != nullptr && currentDouble->currentProcess) {
        *number = *currentDouble->currentProcess;
        return noErr;
    }
    return __real_GetCurrentProcess(number);
}

int __wrap_sysctl(int* name, unsigned count, void* block, size_t* length, void* newBlock, size_t newLength) {
    PlatformDouble* const platform = currentDouble;
    if (platform == nullptr) return __real_sysctl(name, count, block, length, newBlock, newLength);
    EXPECT_TRUE(count == 3 && name[0] == CTL_KERN && name[1] == KERN_PROC && name[2] == KERN_PROC_ALL);
    ++platform->queries;
    if (platform->beforeQuery) platform->beforeQuery(platform->queries);
    if (const auto failure = platform->queryErrors.find(platform->queries);
        failure != platform->queryErrors.end() && failure->second != 0) {
        errno = failure->second;
        return -1;
    }
    if (platform->processes) return dovrel::test::answerQuery(*platform->processes, block, length);
    return __real_sysctl(name, count, block, length, newBlock, newLength);
}

int __wrap_usleep(useconds_t microseconds) {
    if (currentDouble == nullptr) return __real_usleep(microseconds);
    currentDouble->sleeps.push_back(microseconds);
    return 0;
}
}
