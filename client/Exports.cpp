#include <cstdlib>

#include "client/CallTrace.h"
#include "client/CurrentSession.h"
#include "dovrel/pos.h"

using dovrel::CallTrace;
using dovrel::isSessionOfParent;

namespace {

// Runs the operation in the session, and traces it with the arguments that `describe` passes. In a process that
// was forked from the session's owner it fails at once, with null and 0 in the outputs.
template <typename Describe, typename Operation, typename... Output>
uint32_t inSession(const char* function, const Describe& describe, const Operation& operation,
                   Output*... outputs) {
    const auto run = [&]() -> uint32_t {
        if (!isSessionOfParent()) return operation(*dovrel::currentSession()) ? POS_OK : POS_FAILURE;
        ((outputs != nullptr ? static_cast<void>(*outputs = Output{}) : static_cast<void>(0)), ...);
        return POS_FAILURE;
    };
    return CallTrace::run(function, describe, run, outputs...);
}

// Passes nothing: the function has no arguments that a trace shows.
void describeNothing(CallTrace&) {}

// The executer is null in a call without one, and then left out.
void describeInstantiation(CallTrace& call, uint32_t applicationId, void** executerId, void** classId,
                           void** objectId) {
    call.number("application", applicationId);
    call.identifierHandle("executer", executerId);
    call.identifierHandle("class", classId);
    call.outputIdentifier("object", objectId);
}

// As above. `result` and `resultLength` are read only after a success.
void describeMethodCall(CallTrace& call, uint32_t applicationId, void** executerId, void** objectId,
                        const char* methodName, const uint8_t* parameters, uint32_t parameterLength,
                        uint8_t* const* result, const uint32_t* resultLength) {
    call.number("application", applicationId);
    call.identifierHandle("executer", executerId);
    call.identifierHandle("object", objectId);
    call.text("method", methodName);
    call.data("parameters", parameters, parameterLength);
    if (call.hasSucceeded()) call.output("result", *result, *resultLength);
}

using Session = dovrel::POSAccessUserInteraction;

}  // namespace

extern "C" {

uint32_t InitializePOS(void) {
    if (isSessionOfParent()) return POS_FAILURE;
    const dovrel::TraceTimer timer;
    dovrel::openSession(dovrel::platformParts());
    // The trace begins with the session.
    CallTrace::writeResult(__func__, timer);
    return POS_OK;
}

uint32_t TerminatePOS(void) {
    // The trace ends with the session, so it contains no entry about the end of this call.
    return CallTrace::run(__func__, describeNothing, []() -> uint32_t {
        if (isSessionOfParent()) return POS_FAILURE;
        dovrel::closeSession();
        return POS_OK;
    });
}

uint32_t posRegisterApplicationWithClasses(const char* applicationName, void** classList, uint32_t classCount,
                                           uint16_t* options, uint32_t optionsLength,
                                           uint32_t* applicationId) {
    return inSession(
        __func__,
        [&](CallTrace& call) {
            call.textAtBegin("name", applicationName);
            call.number("classes", classCount);
            if (call.hasSucceeded())
                for (uint32_t i = 0; i < classCount; ++i)
                    call.identifier("class", classList[i]);
            call.data("options", options, optionsLength);
            if (call.hasSucceeded()) call.outputNumber("application", *applicationId);
        },
        [&](Session& session) {
            return session.posRegisterApplicationWithClasses(applicationName, classList, classCount, options,
                                                             optionsLength, applicationId);
        });
}

uint32_t posUnregisterApplication(uint32_t applicationId) {
    return inSession(
        __func__, [&](CallTrace& call) { call.number("application", applicationId); },
        [&](Session& session) { return session.posUnregisterApplication(applicationId); });
}

uint32_t posInstantiateObject(uint32_t applicationId, void** classId, void** objectId) {
    return inSession(
        __func__,
        [&](CallTrace& call) { describeInstantiation(call, applicationId, nullptr, classId, objectId); },
        [&](Session& session) { return session.posInstantiateObject(applicationId, classId, objectId); },
        objectId);
}

uint32_t posInstantiateObjectOnExecuter(uint32_t applicationId, void** executerId, void** classId,
                                        void** objectId) {
    return inSession(
        __func__,
        [&](CallTrace& call) { describeInstantiation(call, applicationId, executerId, classId, objectId); },
        [&](Session& session) {
            return session.posInstantiateObjectOnExecuter(applicationId, executerId, classId, objectId);
        },
        objectId);
}

uint32_t posCallMethod(uint32_t applicationId, void** objectId, const char* methodName, uint8_t* parameters,
                       uint32_t parameterLength, uint8_t** result, uint32_t* resultLength) {
    return inSession(
        __func__,
        [&](CallTrace& call) {
            describeMethodCall(call, applicationId, nullptr, objectId, methodName, parameters,
                               parameterLength, result, resultLength);
        },
        [&](Session& session) {
            return session.posCallMethod(applicationId, objectId, methodName, parameters, parameterLength,
                                         result, resultLength);
        },
        result, resultLength);
}

uint32_t posCallMethodOnExecuter(uint32_t applicationId, void** executerId, void** objectId,
                                 const char* methodName, uint8_t* parameters, uint32_t parameterLength,
                                 uint8_t** result, uint32_t* resultLength) {
    return inSession(
        __func__,
        [&](CallTrace& call) {
            describeMethodCall(call, applicationId, executerId, objectId, methodName, parameters,
                               parameterLength, result, resultLength);
        },
        [&](Session& session) {
            return session.posCallMethodOnExecuter(applicationId, executerId, objectId, methodName,
                                                   parameters, parameterLength, result, resultLength);
        },
        result, resultLength);
}

uint32_t posDeleteObject(uint32_t applicationId, void** objectId) {
    return inSession(
        __func__,
        [&](CallTrace& call) {
            call.number("application", applicationId);
            call.identifierHandle("object", objectId);
        },
        [&](Session& session) { return session.posDeleteObject(applicationId, objectId); });
}

uint32_t posGetInfo(uint32_t applicationId, const void* request, uint32_t requestLength, uint8_t** info,
                    int32_t* infoLength) {
    return inSession(
        __func__,
        [&](CallTrace& call) {
            call.number("application", applicationId);
            call.data("request", request, requestLength);
            if (call.hasSucceeded()) call.output("info", *info, static_cast<uint32_t>(*infoLength));
        },
        [&](Session& session) {
            return session.posGetInfo(applicationId, request, requestLength, info, infoLength);
        },
        info, infoLength);
}

uint32_t posExecuteCMD(uint32_t applicationId, void** command, uint32_t commandLength, void** argument,
                       uint32_t argumentLength, uint8_t** result, uint32_t* resultLength) {
    return inSession(
        __func__,
        [&](CallTrace& call) {
            call.number("application", applicationId);
            call.handle("command", command, commandLength);
            call.handle("argument", argument, argumentLength);
            if (call.hasSucceeded()) call.output("result", *result, *resultLength);
        },
        [&](Session& session) {
            return session.posExecuteCMD(applicationId, command, commandLength, argument, argumentLength,
                                         result, resultLength);
        },
        result, resultLength);
}

uint32_t posDeleteDLLHeapData(uint8_t* data) {
    return CallTrace::run(__func__, describeNothing, [data]() -> uint32_t {
        delete[] data;
        return POS_OK;
    });
}

uint32_t posFreeDllHeapData(void* data) {
    return CallTrace::run(__func__, describeNothing, [data]() -> uint32_t {
        std::free(data);
        return POS_OK;
    });
}

}  // extern "C"
