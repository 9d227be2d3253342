/*
 * Dovrel: the client library of a protected object server.
 *
 * Glossary
 *   server        the process "Merrowd", in which the objects live. The library finds, launches and wakes it.
 *   application   what a host registers under a name; the server answers with an identifier that every other
 *                 call takes.
 *   class, object named by identifiers of POS_IDENTIFIER_SIZE bytes.
 *   handle        a `void **` argument is the address of a pointer to the bytes that it stands for: to the 16
 *                 bytes of an identifier, or to the bytes of a command or its argument.
 *   executer      a unit of the server on which an object may be placed. A null handle, or one that points to
 *                 null, is no executer.
 *
 * Results. POS_OK or POS_FAILURE, nothing else. A failure has been shown to the user in an alert (where
 * alerts cannot be shown it went to the system log) and, where that alert offered it, was tried again, before
 * the call returns. Where a function says so, nothing is shown; nor is it when the server refuses with an
 * error code that this library does not know. After a failure the outputs are null and 0 where nothing else
 * is said.
 *
 * Pointers. Where nothing else is said they must not be null: a null pointer is a failure that is shown, and
 * nothing is sent. Nothing that a host passes is kept or changed.
 *
 * Threads. Any thread may call any function after InitializePOS has returned and before TerminatePOS is
 * called; calls are served one after another. An alert runs on the main thread while its call keeps the
 * others waiting, so no function may be called by what the main thread's event loop runs meanwhile. For the
 * same reason a host that calls from other threads keeps the main thread in its event loop and calls nothing
 * there: the main thread would wait for its turn, and the other thread's alert for the main thread, for good.
 * InitializePOS and TerminatePOS must not overlap with any other call. No function may be called from a
 * signal handler, and no thread may be cancelled inside one.
 *
 * Blocking. A call waits for its turn, then for the server's answer (up to 10000 ticks of 1/60 s, about 167
 * seconds, per attempt), then for the user where a failure is shown. When the server has gone away it is
 * launched again, at most 20 times for one exchange; a call makes one exchange, a registration two. A server
 * that is installed but never answers is given up after ten handshakes of five seconds.
 *
 * Calling anything but InitializePOS and the two freeing functions without a session is an error of the host
 * that is not checked. No exception of C++ leaves a function other than InitializePOS.
 */
#ifndef DOVREL_POS_H
#define DOVREL_POS_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#if defined(__GNUC__)
#define POS_EXPORT __attribute__((visibility("default")))
#else
#define POS_EXPORT
#endif

/** The call did what it is for. */
#define POS_OK 0u
/** The call failed. */
#define POS_FAILURE 0x80000008u

/** Bytes of a class, object or executer identifier. */
#define POS_IDENTIFIER_SIZE 16u

/** Registration option: kept, without further effect. */
#define POS_OPTION_1104 1104u
/** Registration option: a refusal by the server is not shown to the user; the call fails at once. */
#define POS_OPTION_SILENT_REGISTRATION 1120u
/** Registration option: messages of the server for this application are not shown. */
#define POS_OPTION_SILENT_MESSAGES 1121u

/**
 * Opens the session of this process. Sends nothing. A second call leaves the session and its registrations as
 * they are.
 *
 * @retval POS_OK       The session is there. There is no failure code: what keeps the session from being made
 *                      (memory or locks have run out) passes as an exception of C++, and there is no session.
 */
POS_EXPORT uint32_t InitializePOS(void);

/**
 * Unregisters every application that is still registered, in ascending order of their identifiers as signed
 * numbers, and closes the session. What cannot be unregistered is forgotten; nothing is shown. InitializePOS
 * may be called again. Without a session the call is an error of the host that is not checked.
 *
 * @retval POS_OK       Always.
 */
POS_EXPORT uint32_t TerminatePOS(void);

/**
 * Registers an application and its classes with the server; finds, launches and wakes the server first.
 *
 * @param[in]  applicationName  Zero-terminated; null counts as the empty name. Failure messages show it.
 * @param[in]  classList        classCount pointers to identifiers of POS_IDENTIFIER_SIZE bytes; may be null
 *                              when there are none.
 * @param[in]  classCount       Number of classes.
 * @param[in]  options          16-bit option codes (POS_OPTION_...); unknown ones are ignored. May be null
 *                              when there are none (optionsLength below 2).
 * @param[in]  optionsLength    Bytes in options. When it is odd, the options are ignored here, but sent.
 * @param[out] applicationId    Receives the identifier on success; untouched after a failure.
 *
 * @retval POS_OK       Registered.
 * @retval POS_FAILURE  Not registered: a null pointer, no server, another interface version, or refused. A
 *                      refusal was shown with Retry and Cancel, or not at all where the options say so.
 */
POS_EXPORT uint32_t posRegisterApplicationWithClasses(const char* applicationName, void** classList,
                                                      uint32_t classCount, uint16_t* options,
                                                      uint32_t optionsLength, uint32_t* applicationId);

/**
 * Unregisters one application. When it was the last one, the connection to the server is forgotten.
 *
 * @param[in]  applicationId    A registered application.
 *
 * @retval POS_OK       The application is no longer registered.
 * @retval POS_FAILURE  Not registered (nothing is shown), or refused; then the registration stays.
 */
POS_EXPORT uint32_t posUnregisterApplication(uint32_t applicationId);

/**
 * Creates an object of a class in the server. A message of the server for the user is shown afterwards.
 *
 * @param[in]  applicationId    A registered application.
 * @param[in]  classId          Handle of the class identifier.
 * @param[out] objectId         *objectId receives a new block of POS_IDENTIFIER_SIZE bytes, the identifier of
 *                              the object, which the host frees with posFreeDllHeapData.
 *
 * @retval POS_OK       The object exists.
 * @retval POS_FAILURE  Not registered (nothing is shown), a null pointer, a class that the application did
 *                      not register or the server does not know, or refused.
 */
POS_EXPORT uint32_t posInstantiateObject(uint32_t applicationId, void** classId, void** objectId);

/** The same as posInstantiateObject; the executer is not passed on. */
POS_EXPORT uint32_t posInstantiateObjectOnExecuter(uint32_t applicationId, void** executerId, void** classId,
                                                   void** objectId);

/**
 * Calls a method of an object. A message of the server for the user is shown afterwards.
 *
 * @param[in]  applicationId    A registered application.
 * @param[in]  objectId         Handle of the object identifier.
 * @param[in]  methodName       Zero-terminated name of the method.
 * @param[in]  parameters       Parameter bytes; may be null when there are none.
 * @param[in]  parameterLength  Bytes in parameters.
 * @param[out] result           *result receives the result block, which the host frees with
 *                              posDeleteDLLHeapData; null for an empty result.
 * @param[out] resultLength     Receives the number of bytes in the result block.
 *
 * @retval POS_OK       The method ran; its result was handed out.
 * @retval POS_FAILURE  Not registered (nothing is shown), a null pointer, no such object or method, or the
 *                      method failed.
 */
POS_EXPORT uint32_t posCallMethod(uint32_t applicationId, void** objectId, const char* methodName,
                                  uint8_t* parameters, uint32_t parameterLength, uint8_t** result,
                                  uint32_t* resultLength);

/** The same as posCallMethod, placed on the executer whose handle is given, if it names one. */
POS_EXPORT uint32_t posCallMethodOnExecuter(uint32_t applicationId, void** executerId, void** objectId,
                                            const char* methodName, uint8_t* parameters,
                                            uint32_t parameterLength, uint8_t** result,
                                            uint32_t* resultLength);

/**
 * Deletes an object in the server. The block with its identifier stays the host's to free.
 *
 * @param[in]  applicationId    A registered application.
 * @param[in]  objectId         Handle of the object identifier.
 *
 * @retval POS_OK       The object is gone.
 * @retval POS_FAILURE  Not registered (nothing is shown), a null pointer, or no such object.
 */
POS_EXPORT uint32_t posDeleteObject(uint32_t applicationId, void** objectId);

/**
 * Fetches an information block. The request of the two bytes 0x60 0x01 (352, least significant byte first) is
 * answered without the server, even before any registration, with the 4 bytes of the interface version, 7.
 *
 * @param[in]  applicationId    Sent along; need not be registered.
 * @param[in]  request          Request bytes; never null.
 * @param[in]  requestLength    Bytes in request.
 * @param[out] info             *info receives the block, which the host frees with posDeleteDLLHeapData; null
 *                              when there is none.
 * @param[out] infoLength       Receives the number of bytes in the block.
 *
 * @retval POS_OK       Answered.
 * @retval POS_FAILURE  A null pointer, no server, refused, or a block of 2^31 bytes or more.
 */
POS_EXPORT uint32_t posGetInfo(uint32_t applicationId, const void* request, uint32_t requestLength,
                               uint8_t** info, int32_t* infoLength);

/**
 * Runs a command in the server.
 *
 * @param[in]  applicationId    A registered application.
 * @param[in]  command          Handle of the command's bytes; a handle of null is legal when there are none.
 * @param[in]  commandLength    Bytes of the command.
 * @param[in]  argument         Handle of the argument's bytes; a handle of null is legal when there are none.
 * @param[in]  argumentLength   Bytes of the argument.
 * @param[out] result           As of posCallMethod.
 * @param[out] resultLength     As of posCallMethod.
 *
 * @retval POS_OK       The command ran; its result was handed out.
 * @retval POS_FAILURE  Not registered (nothing is shown), a null pointer, no such command, or the command
 *                      failed.
 */
POS_EXPORT uint32_t posExecuteCMD(uint32_t applicationId, void** command, uint32_t commandLength,
                                  void** argument, uint32_t argumentLength, uint8_t** result,
                                  uint32_t* resultLength);

/**
 * Frees a result of posCallMethod, posCallMethodOnExecuter, posExecuteCMD or posGetInfo; null is ignored.
 * Needs no session.
 *
 * @retval POS_OK       Always.
 */
POS_EXPORT uint32_t posDeleteDLLHeapData(uint8_t* data);

/**
 * Frees an object identifier that posInstantiateObject or posInstantiateObjectOnExecuter handed out; null is
 * ignored. Needs no session. Not for the results of the other calls: they come from another allocator.
 *
 * @retval POS_OK       Always.
 */
POS_EXPORT uint32_t posFreeDllHeapData(void* data);

#ifdef __cplusplus
}
#endif

#endif
