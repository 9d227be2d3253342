#include <cstdlib>

#include "client/ProcessSession.h"
#include "dovrel/pos.h"

using dovrel::currentSession;

namespace {

constexpr uint32_t resultOf(bool succeeded) {
    return succeeded ? POS_OK : POS_FAILURE;
}

}  // namespace

extern "C" {

uint32_t InitializePOS(void) {
    dovrel::openSession(dovrel::platformParts());
    return POS_OK;
}

uint32_t TerminatePOS(void) {
    dovrel::closeSession();
    return POS_OK;
}

uint32_t posRegisterApplicationWithClasses(const char* applicationName, void** classList, uint32_t classCount,
                                           uint16_t* options, uint32_t optionsLength,
                                           uint32_t* applicationId) {
    return resultOf(currentSession()->posRegisterApplicationWithClasses(
        applicationName, classList, classCount, options, optionsLength, applicationId));
}

uint32_t posUnregisterApplication(uint32_t applicationId) {
    return resultOf(currentSession()->posUnregisterApplication(applicationId));
}

uint32_t posInstantiateObject(uint32_t applicationId, void** classId, void** objectId) {
    return resultOf(currentSession()->posInstantiateObject(applicationId, classId, objectId));
}

uint32_t posInstantiateObjectOnExecuter(uint32_t applicationId, void** executerId, void** classId,
                                        void** objectId) {
    return resultOf(
        currentSession()->posInstantiateObjectOnExecuter(applicationId, executerId, classId, objectId));
}

uint32_t posCallMethod(uint32_t applicationId, void** objectId, const char* methodName, uint8_t* parameters,
                       uint32_t parameterLength, uint8_t** result, uint32_t* resultLength) {
    return resultOf(currentSession()->posCallMethod(applicationId, objectId, methodName, parameters,
                                                    parameterLength, result, resultLength));
}

uint32_t posCallMethodOnExecuter(uint32_t applicationId, void** executerId, void** objectId,
                                 const char* methodName, uint8_t* parameters, uint32_t parameterLength,
                                 uint8_t** result, uint32_t* resultLength) {
    return resultOf(currentSession()->posCallMethodOnExecuter(
        applicationId, executerId, objectId, methodName, parameters, parameterLength, result, resultLength));
}

uint32_t posDeleteObject(uint32_t applicationId, void** objectId) {
    return resultOf(currentSession()->posDeleteObject(applicationId, objectId));
}

uint32_t posGetInfo(uint32_t applicationId, const void* request, uint32_t requestLength, uint8_t** info,
                    int32_t* infoLength) {
    return resultOf(currentSession()->posGetInfo(applicationId, request, requestLength, info, infoLength));
}

uint32_t posExecuteCMD(uint32_t applicationId, void** command, uint32_t commandLength, void** argument,
                       uint32_t argumentLength, uint8_t** result, uint32_t* resultLength) {
    return resultOf(currentSession()->posExecuteCMD(applicationId, command, commandLength, argument,
                                                    argumentLength, result, resultLength));
}

uint32_t posDeleteDLLHeapData(uint8_t* data) {
    delete[] data;
    return POS_OK;
}

uint32_t posFreeDllHeapData(void* data) {
    std::free(data);
    return POS_OK;
}

}  // extern "C"
