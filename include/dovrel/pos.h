/*
 * Dovrel: the client library of a protected object server. This header is C99 and the whole contract.
 *
 * Glossary
 *   server        the process "Merrowd", in which the objects live. The library finds, launches and wakes it.
 *   host          the program that calls these functions.
 *   application   a name and its classes, registered by a host. The server returns an identifier, which the
 *                 other calls take.
 *   class, object have identifiers of POS_IDENTIFIER_SIZE bytes.
 *   handle        a `void **` argument: the address of a pointer to the bytes in question, which are the 16
 *                 bytes of an identifier, or the bytes of a command or of its argument.
 *   executer      a unit of the server on which an object may be placed. A null handle, or a handle of a null
 *                 pointer, means no executer.
 *
 * Results. Every function returns POS_OK or POS_FAILURE. Before a call fails, the library shows the failure
 * to the user in an alert and adds it to the error log. If the server refuses with error code 32
 * (registration refused), the alert offers Retry, which runs the call again. An alert that cannot be shown
 * goes to the system log (on Linux to standard error). A failure is not shown
 *   - if the description of the function says so, or
 *   - if the server refuses with error code 36 (library not found) or with one that this library does not
 *     know.
 * After a failure the outputs are null and 0, unless the description of the function says something else.
 *
 * Pointers must not be null unless the description says so. A null pointer is a failure that is shown;
 * nothing is sent. The library does not change the host's data and keeps no pointer to them after the call.
 * The host must not change them during the call (except applicationName, which is copied at once).
 *
 * Sizes. Lengths are 32-bit numbers of bytes. A whole request or reply must be smaller than 4 GiB; on Linux
 * an event carries at most 1 GiB. A request that is too large fails and is not sent. While a call runs, the
 * library needs about three times the size of its data.
 *
 * Characters. Texts end with a NUL character and are UTF-8 or Mac Roman. The library passes their bytes on
 * unchanged. For an alert it reads each well-formed multi-byte sequence of UTF-8 as such and every other byte
 * as Mac Roman, so both kinds of text are readable. The exception is a Mac Roman text whose bytes happen to be
 * well-formed UTF-8: a typographic quotation mark or apostrophe directly before an accented letter is shown as
 * another character. Use UTF-8 for such texts. This holds for application names and for the server's messages
 * and error texts. The server compares method names byte by byte.
 *
 * Threads. After InitializePOS has returned and before TerminatePOS is called, any thread may call any
 * function. Calls run one after another; a call also keeps the others waiting while its alert is open.
 * InitializePOS and TerminatePOS must not overlap with any other call. No function may be called from a
 * signal handler, and no thread may be cancelled inside a function.
 *
 * Event loops. On Linux a helper process shows the alerts. They need no event loop and no main thread,
 * whatever toolkit the host uses. On macOS alerts run on the main thread: the alert of another thread's call
 * waits until the main thread is in its event loop or run loop. So on macOS
 *   - the main thread must not call a function while another thread may be in one, because it would wait for
 *     that call, and the call's alert for the main thread;
 *   - code that the main thread's loop runs while an alert is open must not call a function.
 *
 * Blocking. A call waits for its turn, then for the server's reply (up to 10000 ticks of 1/60 s, about 167
 * seconds), then for the user if a failure is shown. If the server has gone, the library connects again,
 * launches the server if necessary, and repeats the request; one request is sent at most 20 times. A call
 * makes one request, a registration two. A server that is installed but never answers is given up after ten
 * handshakes of five seconds.
 *
 * Standard output. If the server is not installed, cannot be launched or never answers, the library also
 * prints a block of 10 to 20 lines for the user to stdout. One call can print it up to 21 times.
 *
 * Server restarts. If the server has ended, the next call launches it again, but the new server does not know
 * the applications and objects of the old one. So the call fails and the failure is shown (except for
 * registrations and posGetInfo). To go on, the host registers anew and creates its objects anew. The old
 * application identifier can only be dropped: the server refuses to unregister it. The blocks of old object
 * identifiers are freed as usual.
 *
 * Processes. A session belongs to the process that opened it. After fork() the child must not call any
 * function, nor run atexit handlers that call one, before it has executed another program. If a process ends
 * without TerminatePOS, its applications stay registered until the server notices (the development server
 * forgets them soon). TerminatePOS may be called in an atexit handler, whether the handler was installed
 * before or after the library was loaded. Close the session before dlclose(): on Linux the library stays in
 * memory, and an open session with it, which the next dlopen() finds again.
 *
 * Calling anything but InitializePOS and the two freeing functions without a session is an error of the host
 * that is not checked. No C++ exception leaves a function, except InitializePOS.
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

/** The call succeeded. */
#define POS_OK 0u
/** The call failed. */
#define POS_FAILURE 0x80000008u

/** Bytes of a class, object or executer identifier. */
#define POS_IDENTIFIER_SIZE 16u

/** Registration option: sent to the server; no effect in the library. */
#define POS_OPTION_1104 1104u
/** Registration option: if the server refuses the registration, the call fails at once and shows nothing. */
#define POS_OPTION_SILENT_REGISTRATION 1120u
/** Registration option: messages of the server for this application are not shown. Failures still are. */
#define POS_OPTION_SILENT_MESSAGES 1121u

/**
 * Opens the session of this process. Sends nothing and shows nothing. If there is a session, it stays as it
 * is with all its registrations.
 *
 * @retval POS_OK       There is a session. There is no failure code: if memory or the system's locks have run
 *                      out, the function throws a C++ exception (which ends a host in C), and there is no
 *                      session.
 */
POS_EXPORT uint32_t InitializePOS(void);

/**
 * Unregisters every application that is still registered, in ascending order of their identifiers as signed
 * numbers, then closes the session. Shows nothing. It stops unregistering at the first application that the
 * server refuses, for example one of a server that has ended since. The following applications are then
 * forgotten here but stay registered in the server, so a host should unregister its applications itself.
 *
 * If an application is registered and the server has ended, the function launches the server and waits for
 * it, as every call does. Without a registered application it sends nothing. Afterwards InitializePOS may be
 * called again. Without a session the call is an error of the host that is not checked.
 *
 * @retval POS_OK       Always.
 */
POS_EXPORT uint32_t TerminatePOS(void);

/**
 * Registers an application and its classes with the server. Finds, launches and wakes the server first.
 *
 * @param[in]  applicationName  Shown to the user in alerts; null counts as the empty name. Copied at once, so
 *                              that every retry sends the same name.
 * @param[in]  classList        classCount pointers to identifiers of POS_IDENTIFIER_SIZE bytes; may be null
 *                              if classCount is 0.
 * @param[in]  classCount       Number of classes.
 * @param[in]  options          16-bit option codes (POS_OPTION_...); unknown codes have no effect here. May
 *                              be null if optionsLength is 0 or odd.
 * @param[in]  optionsLength    Bytes in options. If it is odd, the options have no effect here, but they are
 *                              sent.
 * @param[out] applicationId    Receives the application's identifier; unchanged after a failure.
 *
 * @retval POS_OK       The application is registered.
 * @retval POS_FAILURE  It is not: a null pointer, no server, a server with another interface version, or the
 *                      server refused. The alert of a refusal offers Retry and Cancel.
 */
POS_EXPORT uint32_t posRegisterApplicationWithClasses(const char* applicationName, void** classList,
                                                      uint32_t classCount, uint16_t* options,
                                                      uint32_t optionsLength, uint32_t* applicationId);

/**
 * Unregisters one application. The development server deletes its objects with it; in any case they cannot be
 * used any more. The host still frees the blocks with their identifiers. After the last application the
 * library forgets its connection to the server.
 *
 * @param[in]  applicationId    A registered application.
 *
 * @retval POS_OK       The application is no longer registered.
 * @retval POS_FAILURE  It was not registered (nothing is shown), or the server refused; then it stays
 *                      registered.
 */
POS_EXPORT uint32_t posUnregisterApplication(uint32_t applicationId);

/**
 * Creates an object of a class in the server. A message of the server for the user, if there is one, is shown
 * before the function returns.
 *
 * @param[in]  applicationId    A registered application.
 * @param[in]  classId          Handle of the class identifier.
 * @param[out] objectId         *objectId receives a new block of POS_IDENTIFIER_SIZE bytes with the object's
 *                              identifier. The host frees it with posFreeDllHeapData.
 *
 * @retval POS_OK       The object exists.
 * @retval POS_FAILURE  The application is not registered (nothing is shown), a null pointer, or the server
 *                      refused. A class that the application did not register fails here only if the server
 *                      asked for this check at registration; otherwise the server decides.
 */
POS_EXPORT uint32_t posInstantiateObject(uint32_t applicationId, void** classId, void** objectId);

/** The same as posInstantiateObject. The executer has no effect and may be null. */
POS_EXPORT uint32_t posInstantiateObjectOnExecuter(uint32_t applicationId, void** executerId, void** classId,
                                                   void** objectId);

/**
 * Calls a method of an object. A message of the server for the user, if there is one, is shown before the
 * function returns.
 *
 * @param[in]  applicationId    A registered application.
 * @param[in]  objectId         Handle of the object identifier.
 * @param[in]  methodName       Name of the method.
 * @param[in]  parameters       Parameter bytes; may be null if parameterLength is 0.
 * @param[in]  parameterLength  Bytes in parameters.
 * @param[out] result           *result receives the result, a block that the host frees with
 *                              posDeleteDLLHeapData; null if the result is empty.
 * @param[out] resultLength     Receives the number of bytes in the result.
 *
 * @retval POS_OK       The method ran.
 * @retval POS_FAILURE  The application is not registered (nothing is shown), a null pointer, no such object
 *                      or method, or the method failed.
 */
POS_EXPORT uint32_t posCallMethod(uint32_t applicationId, void** objectId, const char* methodName,
                                  uint8_t* parameters, uint32_t parameterLength, uint8_t** result,
                                  uint32_t* resultLength);

/** The same as posCallMethod, on the executer with that handle. */
POS_EXPORT uint32_t posCallMethodOnExecuter(uint32_t applicationId, void** executerId, void** objectId,
                                            const char* methodName, uint8_t* parameters,
                                            uint32_t parameterLength, uint8_t** result,
                                            uint32_t* resultLength);

/**
 * Deletes an object in the server. The host still frees the block with its identifier.
 *
 * @param[in]  applicationId    A registered application.
 * @param[in]  objectId         Handle of the object identifier.
 *
 * @retval POS_OK       The object is deleted.
 * @retval POS_FAILURE  The application is not registered (nothing is shown), a null pointer, or no such
 *                      object.
 */
POS_EXPORT uint32_t posDeleteObject(uint32_t applicationId, void** objectId);

/**
 * Fetches a block of information from the server. For the request of the two bytes 0x60 0x01 (352, least
 * significant byte first) the library itself makes the block: 4 bytes with the interface version, 7. That
 * request needs neither a server nor a registered application.
 *
 * @param[in]  applicationId    Sent to the server; need not be registered.
 * @param[in]  request          Request bytes; must not be null, even if requestLength is 0.
 * @param[in]  requestLength    Bytes in request.
 * @param[out] info             *info receives the information, a block that the host frees with
 *                              posDeleteDLLHeapData; null if it is empty.
 * @param[out] infoLength       Receives the number of bytes in the block.
 *
 * @retval POS_OK       The block is there.
 * @retval POS_FAILURE  A null pointer, no server, the server refused, or the block has 2^31 bytes or more.
 */
POS_EXPORT uint32_t posGetInfo(uint32_t applicationId, const void* request, uint32_t requestLength,
                               uint8_t** info, int32_t* infoLength);

/**
 * Runs a command in the server.
 *
 * @param[in]  applicationId    A registered application.
 * @param[in]  command          Handle of the command's bytes; a handle of a null pointer is legal if
 *                              commandLength is 0.
 * @param[in]  commandLength    Bytes of the command.
 * @param[in]  argument         Handle of the argument's bytes; a handle of a null pointer is legal if
 *                              argumentLength is 0.
 * @param[in]  argumentLength   Bytes of the argument.
 * @param[out] result           As for posCallMethod.
 * @param[out] resultLength     As for posCallMethod.
 *
 * @retval POS_OK       The command ran.
 * @retval POS_FAILURE  The application is not registered (nothing is shown), a null pointer, no such command,
 *                      or the command failed.
 */
POS_EXPORT uint32_t posExecuteCMD(uint32_t applicationId, void** command, uint32_t commandLength,
                                  void** argument, uint32_t argumentLength, uint8_t** result,
                                  uint32_t* resultLength);

/**
 * Frees a result of posCallMethod, posCallMethodOnExecuter, posExecuteCMD or posGetInfo. Null is ignored.
 * Needs no session.
 *
 * @retval POS_OK       Always.
 */
POS_EXPORT uint32_t posDeleteDLLHeapData(uint8_t* data);

/**
 * Frees an object identifier of posInstantiateObject or posInstantiateObjectOnExecuter. Null is ignored.
 * Needs no session. Results of the other calls come from another allocator and must not be passed here.
 *
 * @retval POS_OK       Always.
 */
POS_EXPORT uint32_t posFreeDllHeapData(void* data);

#ifdef __cplusplus
}
#endif

#endif
