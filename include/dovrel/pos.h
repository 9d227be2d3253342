/*
 * Dovrel: the client library of a protected object server.
 *
 * Glossary
 *   server        the process "Merrowd", in which the objects live. The library finds, launches and wakes it.
 *   application   what a host registers under a name; the server answers with an identifier that every other call takes.
 *   class, object named by identifiers of POS_IDENTIFIER_SIZE bytes.
 *   handle        a `void **` argument is the address of a pointer to the bytes it stands for: to the 16 bytes of an
 *                 identifier, or to the bytes of a command or its argument.
 *   executer      a unit of the server on which an object may be placed. A null handle, or one that points to null, is
 *                 no executer.
 *
 * Results. POS_OK or POS_FAILURE, nothing else. A failure has been shown to the user in an alert (where alerts cannot be
 * shown it went to the system log) and, where that alert offered it, was tried again, before the call returns. After a
 * failure the outputs are null and 0 where nothing else is said.
 *
 * Threads. Any thread may call any function after InitializePOS has returned and before TerminatePOS is called; calls are served one after another, also while an alert of one of them is open. InitializePOS and
 * TerminatePOS must not overlap with any other call. No function may be called from a signal handler.
 *
 * Blocking. A call waits for its turn, then for the server's answer (up to 10000 ticks of 1/60 s, about 167 seconds, per
 * attempt), then for the user where a failure is shown. When the server has gone away it is launched again, at most 20
 * times for one call; a server that is installed but never answers is given up after ten handshakes of five seconds.
 *
 * Calling anything but InitializePOS without a session is an error of the host that is not checked.
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
/** The call failed; the user has been told. */
#define POS_FAILURE 0x80000008u

/** Bytes of a class, object or executer identifier. */
#define POS_IDENTIFIER_SIZE 16u

/** Registration option: kept, without further effect. */
#define POS_OPTION_1104 1104u
/** Registration option: a failed registration is not shown to the user; the call fails at once. */
#define POS_OPTION_SILENT_REGISTRATION 1120u
/** Registration option: messages of the server for this application are not shown. */
#define POS_OPTION_SILENT_MESSAGES 1121u

/**
 * Opens the session of this process. Sends nothing. A second call leaves the session and its registrations as they are.
 *
 * @retval POS_OK       The session is there.
 */
POS_EXPORT uint32_t InitializePOS(void);

/**
 * Unregisters every application that is still registered, in ascending order of their identifiers as signed numbers, and
 * closes the session. What cannot be unregistered is forgotten; nothing is shown. InitializePOS may be called again.
 *
 * @retval POS_OK       Always. Needs a session: a call without one is an error of the host that is not checked.
 */
POS_EXPORT uint32_t TerminatePOS(void);

/**
 * Registers an application and its classes with the server; finds, launches and wakes the server first.
 *
 * @param[in]  applicationName  Zero-terminated; null counts as the empty name. Failure messages show it.
 * @param[in]  classList        classCount pointers to identifiers of 16 bytes; may be null when classCount is 0.
 * @param[in]  classCount       Number of classes.
 * @param[in]  options          16-bit option codes (POS_OPTION_...); unknown ones are ignored. May be null.
 * @param[in]  optionsLength    Bytes in options. 0, 1 and odd lengths: the options are ignored.
 * @param[out] applicationId    Receives the identifier on success and is untouched otherwise. Must not be null.
 *
 * @retval POS_OK       Registered.
 * @retval POS_FAILURE  Not registered: no server, wrong interface version, refused, or a pointer was null. Unless
 *                      POS_OPTION_SILENT_REGISTRATION was given, a refusal was shown with Retry and Cancel.
 */
POS_EXPORT uint32_t posRegisterApplicationWithClasses(const char *applicationName, void **classList, uint32_t classCount,
                                                      uint16_t *options, uint32_t optionsLength,
                                                      uint32_t *applicationId);

/**
 * Unregisters one application. When it was the last one, the connection to the server is forgotten.
 *
 * @retval POS_OK       The application is no longer registered.
 * @retval POS_FAILURE  The identifier is not registered (nothing is shown), or the server refused (the registration stays).
 */
POS_EXPORT uint32_t posUnregisterApplication(uint32_t applicationId);

/**
 * Creates an object of a registered class in the server. A message of the server for the user is shown afterwards.
 *
 * @param[in]  applicationId    A registered application.
 * @param[in]  classId          Handle of the class identifier.
 * @param[out] objectId         *objectId receives a new block of 16 bytes, the object's identifier, which the host frees
 *                              with posFreeDllHeapData; null after a failure.
 *
 * @retval POS_OK       The object exists.
 * @retval POS_FAILURE  Not registered (nothing is shown), a null pointer, an unregistered or unknown class, or refused.
 */
POS_EXPORT uint32_t posInstantiateObject(uint32_t applicationId, void **classId, void **objectId);

/** The same as posInstantiateObject; the executer is not passed on. */
POS_EXPORT uint32_t posInstantiateObjectOnExecuter(uint32_t applicationId, void **executerId, void **classId,
                                                   void **objectId);

/**
 * Calls a method of an object. A message of the server for the user is shown afterwards.
 *
 * @param[in]  applicationId    A registered application.
 * @param[in]  objectId         Handle of the object identifier.
 * @param[in]  methodName       Zero-terminated name of the method.
 * @param[in]  parameters       Parameter bytes; may be null when parameterLength is 0.
 * @param[in]  parameterLength  Bytes in parameters.
 * @param[out] result           Receives the result block, which the host frees with posDeleteDLLHeapData; null for an
 *                              empty result and after a failure. Must not be null.
 * @param[out] resultLength     Receives the number of bytes in *result; 0 after a failure. Must not be null.
 *
 * @retval POS_OK       The method ran; its result was handed out.
 * @retval POS_FAILURE  Not registered (nothing is shown), a null pointer, no such object or method, or the method failed.
 */
POS_EXPORT uint32_t posCallMethod(uint32_t applicationId, void **objectId, const char *methodName, uint8_t *parameters,
                                  uint32_t parameterLength, uint8_t **result, uint32_t *resultLength);

/** The same as posCallMethod, placed on the executer whose handle is given (null, or a handle of null: none). */
POS_EXPORT uint32_t posCallMethodOnExecuter(uint32_t applicationId, void **executerId, void **objectId,
                                            const char *methodName, uint8_t *parameters, uint32_t parameterLength,
                                            uint8_t **result, uint32_t *resultLength);

/**
 * Deletes an object in the server. The host's copy of the identifier stays the host's.
 *
 * @retval POS_OK       The object is gone.
 * @retval POS_FAILURE  Not registered (nothing is shown), a null handle, or no such object.
 */
POS_EXPORT uint32_t posDeleteObject(uint32_t applicationId, void **objectId);

/**
 * Fetches an information block. The request of the two bytes 0x60 0x01 (352, least significant byte first) is answered
 * without the server, even before any registration, with the 4-byte interface version 7.
 *
 * @param[in]  applicationId    Sent along; need not be registered.
 * @param[in]  request          Request bytes. Must not be null.
 * @param[in]  requestLength    Bytes in request.
 * @param[out] info             Written in every case: the block, which the host frees with posDeleteDLLHeapData, or
 *                              null. Must not be null.
 * @param[out] infoLength       Bytes in *info; 0 when there is none. Must not be null.
 *
 * @retval POS_OK       Answered.
 * @retval POS_FAILURE  A null pointer, no server, or refused.
 */
POS_EXPORT uint32_t posGetInfo(uint32_t applicationId, const void *request, uint32_t requestLength, uint8_t **info,
                               int32_t *infoLength);

/**
 * Runs a command in the server.
 *
 * @param[in]  applicationId    A registered application.
 * @param[in]  command          Handle of the command's bytes; a handle of null is legal when commandLength is 0.
 * @param[in]  commandLength    Bytes of the command.
 * @param[in]  argument         Handle of the argument's bytes; a handle of null is legal when argumentLength is 0.
 * @param[in]  argumentLength   Bytes of the argument.
 * @param[out] result           As of posCallMethod.
 * @param[out] resultLength     As of posCallMethod.
 *
 * @retval POS_OK       The command ran; its result was handed out.
 * @retval POS_FAILURE  Not registered (nothing is shown), a null pointer, no such command, or the command failed.
 */
POS_EXPORT uint32_t posExecuteCMD(uint32_t applicationId, void **command, uint32_t commandLength, void **argument,
                                  uint32_t argumentLength, uint8_t **result, uint32_t *resultLength);

/**
 * Frees a result of posCallMethod, posCallMethodOnExecuter, posExecuteCMD or posGetInfo. Null is ignored. Needs no session.
 *
 * @retval POS_OK       Always.
 */
POS_EXPORT uint32_t posDeleteDLLHeapData(uint8_t *data);

/**
 * Frees an object identifier that posInstantiateObject or posInstantiateObjectOnExecuter handed out. Null is legal. Needs
 * no session. Not for the results of the other calls: they come from another allocator.
 *
 * @retval POS_OK       Always.
 */
POS_EXPORT uint32_t posFreeDllHeapData(void *data);

#ifdef __cplusplus
}
#endif

#endif
