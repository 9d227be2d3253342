#include "tools/calls/LoadedLibrary.h"

#include <unistd.h>

#include "dovrel/pos_functions.h"
#include "platform/files/Places.h"
#include "tools/Subcommand.h"

namespace dovrel::tools {

namespace {

posFunctions loaded;

}  // namespace

std::string installedBundlePath() {
    return fileSystemPath(std::string(places::kInstallFolder) + places::kLibraryBundleName);
}

void loadLibrary(const std::string& bundle) {
    const std::string path = bundle.empty() ? installedBundlePath() : bundle;
    const bool searchesByName = bundle.empty() && access(path.c_str(), F_OK) != 0;
    const char* const failure = posLoadFunctions(searchesByName ? nullptr : path.c_str(), &loaded);
    if (failure == nullptr) return;
    std::string message = "the library cannot be loaded: " + std::string(failure);
    if (searchesByName) message += "; there is no " + path + " either; \"dovrel doctor\" tells more";
    throw ToolFailure(message);
}

}  // namespace dovrel::tools

using dovrel::tools::loaded;

uint32_t InitializePOS() {
    return loaded.InitializePOS();
}

uint32_t TerminatePOS() {
    return loaded.TerminatePOS();
}

uint32_t posRegisterApplicationWithClasses(const char* applicationName, void** classList, uint32_t classCount,
                                           uint16_t* options, uint32_t optionsLength,
                                           uint32_t* applicationId) {
    return loaded.posRegisterApplicationWithClasses(applicationName, classList, classCount, options,
                                                    optionsLength, applicationId);
}

uint32_t posUnregisterApplication(uint32_t applicationId) {
    return loaded.posUnregisterApplication(applicationId);
}

uint32_t posInstantiateObject(uint32_t applicationId, void** classId, void** objectId) {
    return loaded.posInstantiateObject(applicationId, classId, objectId);
}

uint32_t posInstantiateObjectOnExecuter(uint32_t applicationId, void** executerId, void** classId,
                                        void** objectId) {
    return loaded.posInstantiateObjectOnExecuter(applicationId, executerId, classId, objectId);
}

uint32_t posCallMethod(uint32_t applicationId, void** objectId, const char* methodName, uint8_t* parameters,
                       uint32_t parameterLength, uint8_t** result, uint32_t* resultLength) {
    return loaded.posCallMethod(applicationId, objectId, methodName, parameters, parameterLength, result,
                                resultLength);
}

uint32_t posCallMethodOnExecuter(uint32_t applicationId, void** executerId, void** objectId,
                                 const char* methodName, uint8_t* parameters, uint32_t parameterLength,
                                 uint8_t** result, uint32_t* resultLength) {
    return loaded.posCallMethodOnExecuter(applicationId, executerId, objectId, methodName, parameters,
                                          parameterLength, result, resultLength);
}

uint32_t posDeleteObject(uint32_t applicationId, void** objectId) {
    return loaded.posDeleteObject(applicationId, objectId);
}

uint32_t posGetInfo(uint32_t applicationId, const void* request, uint32_t requestLength, uint8_t** info,
                    int32_t* infoLength) {
    return loaded.posGetInfo(applicationId, request, requestLength, info, infoLength);
}

uint32_t posExecuteCMD(uint32_t applicationId, void** command, uint32_t commandLength, void** argument,
                       uint32_t argumentLength, uint8_t** result, uint32_t* resultLength) {
    return loaded.posExecuteCMD(applicationId, command, commandLength, argument, argumentLength, result,
                                resultLength);
}

uint32_t posDeleteDLLHeapData(uint8_t* data) {
    return loaded.posDeleteDLLHeapData(data);
}

uint32_t posFreeDllHeapData(void* data) {
    return loaded.posFreeDllHeapData(data);
}
