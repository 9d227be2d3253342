/*
 * Dovrel is the client library of a protected object server. This header, in C99, is its whole interface and
 * the contract of every function.
 *
 * Terms
 *   server        the process "Merrowd", which holds the objects. The library finds, launches and wakes it.
 *   host          the program that calls these functions.
 *   application   a name and a list of classes that a host registers with the server. The server returns an
 *                 identifier for it, and the other calls take that identifier.
 *   class         has an identifier of POS_IDENTIFIER_SIZE bytes.
 *   object        belongs to a class and has an identifier of POS_IDENTIFIER_SIZE bytes.
 *   handle        a `void **` argument: the address of a pointer to the bytes that are meant. These are the
 *                 16 bytes of an identifier, the bytes of a command, or the bytes of a command's argument.
 *   executer      a unit of the server on which an object may be placed. A null handle means "no executer",
 *                 and so does a handle that points to a null pointer.
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
 * Pointers. A pointer must not be null unless the description of the function allows it. If it is null
 * anyway, the library sends nothing, and the call fails with an alert. The library does not change the host's
 * data and keeps no pointer to them after the call. The host must not change its data during the call,
 * except applicationName, which the library copies at once.
 *
 * Sizes. Every length is a 32-bit number of bytes. A whole request or reply must be smaller than 4 GiB; on
 * Linux an Apple event carries at most 1 GiB. A request that is too large is not sent, and the call fails.
 * During a call the library needs about three times as much memory as the data of the call.
 *
 * Characters. Texts end with a NUL character and are UTF-8 or Mac Roman. The library passes their bytes on
 * unchanged. For an alert it reads each well-formed multi-byte sequence of UTF-8 as such and every other byte
 * as Mac Roman, so both kinds of text are readable. The exception is a Mac Roman text whose bytes happen to be
 * well-formed UTF-8: a typographic quotation mark or apostrophe directly before an accented letter is shown as
 * another character. Use UTF-8 for such texts. This holds for application names and for the server's messages
 * and error texts. The server compares method names byte by byte.
 *
 * Threads. After InitializePOS has returned and before TerminatePOS is called, any thread may call any
 * function. Calls run one after another. A call also makes the other calls wait while its alert is open.
 * InitializePOS and TerminatePOS must not overlap with any other call. A signal handler must not call any
 * function, and no thread may be cancelled inside a function.
 *
 * Event loops. On Linux a helper process shows the alerts. The host needs neither an event loop nor a main
 * thread for them, and it may use any user interface toolkit. On macOS alerts run on the main thread. If a
 * call of another thread shows an alert, the alert and the call wait until the main thread is in its event
 * loop or run loop. Therefore, on macOS,
 *   - the main thread must not call a function while another thread may be in one. Otherwise the main thread
 *     waits for the other call, and the alert of the other call waits for the main thread;
 *   - code that the main thread's loop runs while an alert is open must not call a function.
 * The system describes its sending of events for the main thread only. Calls of other threads were never tried
 * on a Mac.
 *
 * Blocking. A call waits for the calls before it, then for the server's reply (at most 10000 ticks of 1/60 s,
 * about 167 seconds), then for the user if it shows a failure. If the server is gone, the library connects
 * again, launches the server if necessary, and repeats the request. It sends one request at most 20 times. A
 * registration makes two requests, every other call makes one. If a server is installed but never answers,
 * the library gives up after ten handshakes of five seconds each.
 *
 * Standard output. If the server is not installed, cannot be launched or never answers, the library also
 * prints a message of 10 to 20 lines for the user to stdout. One call can print it up to 21 times.
 *
 * Host's state. The library leaves the host's signal actions, locale, environment and limits as they are. If
 * stdout is a pipe that nobody reads, that message brings the host SIGPIPE, as its own output would; so does
 * the trace with stderr. A host that must survive that ignores SIGPIPE. On Linux neither an alert nor its line
 * in the system log brings the host a signal.
 *
 * Server restarts. If the server has ended, the next call launches it again. The new server does not know the
 * applications and objects of the old one, so that call fails and shows the failure (except for registrations
 * and posGetInfo). To continue, the host registers its applications again and creates its objects again. The
 * new server refuses to unregister an old application identifier, so the host simply stops using it. The host
 * frees the blocks of the old object identifiers as usual.
 *
 * Processes. A session belongs to the process that opened it. In a child that it creates with fork(), all
 * functions except posDeleteDLLHeapData and posFreeDllHeapData fail at once: they send nothing, show no alert
 * and change nothing. The child may execute another program, which can open its own session. If a process ends
 * without TerminatePOS, its applications stay registered until the server notices (the development server
 * notices soon). An atexit handler may call TerminatePOS, whether the handler was installed before or after the
 * library was loaded. Close the session before dlclose(): otherwise, on Linux, the library stays in memory with
 * its open session, and the next dlopen() finds both again.
 *
 * Without a session the host may call only InitializePOS, posDeleteDLLHeapData and posFreeDllHeapData. The
 * library does not check this. No function throws a C++ exception, except InitializePOS.
 */
/**
 * @file
 * The functions of the library, in C99. The page dovrel(7) contains the rules for all of them: terms, results,
 * pointers, sizes, characters, threads, event loops, blocking, server restarts, processes.
 */
#ifndef DOVREL_POS_H
#define DOVREL_POS_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#if defined(__GNUC__)
/** Marks the functions of the library. */
#define POS_EXPORT __attribute__((visibility("default")))
#else
/** Marks the functions of the library. */
#define POS_EXPORT
#endif

/**
 * The version of this header and of the library that it belongs to. A library of the same major version and
 * the same or a higher minor version has everything that this header declares.
 */
#define POS_VERSION_MAJOR 1
/** See POS_VERSION_MAJOR. */
#define POS_VERSION_MINOR 0
/** See POS_VERSION_MAJOR. */
#define POS_VERSION_PATCH 0

/** The call succeeded. */
#define POS_OK 0u
/** The call failed. */
#define POS_FAILURE 0x80000008u

/** Number of bytes in a class, object or executer identifier. */
#define POS_IDENTIFIER_SIZE 16u

/** Registration option: sent to the server. It has no effect in the library. */
#define POS_OPTION_1104 1104u
/** Registration option: if the server refuses the registration, the call fails at once and shows no alert. */
#define POS_OPTION_SILENT_REGISTRATION 1120u
/** Registration option: the server's messages for this application are not shown. Failures still are. */
#define POS_OPTION_SILENT_MESSAGES 1121u

/**
 * Opens the session of this process. Sends nothing to the server and shows nothing. If the session is already
 * open, it stays as it is, with all its registrations.
 *
 * If memory or the system's locks run out, the function throws a C++ exception (which terminates a host in C), and
 * the session is not opened.
 *
 * @retval POS_OK       The session is open.
 * @retval POS_FAILURE  This process was forked from one with an open session.
 */
POS_EXPORT uint32_t InitializePOS(void);

/**
 * Closes the session. First unregisters every application that is still registered, in ascending order of the
 * identifiers as signed numbers. Shows nothing. If the server refuses to unregister an application
 * (for example one of a server that has ended since), the function does not unregister the applications after
 * it. The library forgets them, but they stay registered in the server. A host should therefore unregister
 * its applications itself.
 *
 * If an application is registered and the server has ended, the function launches the server and waits for
 * it, as every call does. If no application is registered, the function sends nothing. Afterwards
 * InitializePOS may be called again. The host must not call this function without a session; the library does
 * not check this.
 *
 * @retval POS_OK       The session is closed.
 * @retval POS_FAILURE  This process was forked from one with an open session. Nothing was changed.
 */
POS_EXPORT uint32_t TerminatePOS(void);

/**
 * Registers an application and its classes with the server. First finds, launches and wakes the server.
 *
 * @param[in]  applicationName  Name that alerts show to the user; null counts as the empty name. The library
 *                              copies it at once, so every retry sends the same name.
 * @param[in]  classList        Array of classCount pointers, each to an identifier of POS_IDENTIFIER_SIZE
 *                              bytes. May be null if classCount is 0.
 * @param[in]  classCount       Number of classes.
 * @param[in]  options          Option codes of 16 bits each (POS_OPTION_...). Unknown codes have no effect in
 *                              the library. May be null if optionsLength is 0 or odd.
 * @param[in]  optionsLength    Number of bytes in options. If it is odd, the options have no effect in the
 *                              library, but they are sent.
 * @param[out] applicationId    Receives the application's identifier; unchanged after a failure.
 *
 * @retval POS_OK       The application is registered.
 * @retval POS_FAILURE  The application is not registered: a pointer is null, there is no server, the server
 *                      has another interface version, or the server refused. The alert about a refusal offers
 *                      Retry and Cancel.
 */
POS_EXPORT uint32_t posRegisterApplicationWithClasses(const char* applicationName, void** classList,
                                                      uint32_t classCount, uint16_t* options,
                                                      uint32_t optionsLength, uint32_t* applicationId);

/**
 * Unregisters one application. Its objects cannot be used any more; the development server deletes them. The
 * host still frees the blocks with their identifiers. When the last application has been unregistered, the
 * library forgets its connection to the server.
 *
 * @param[in]  applicationId    A registered application.
 *
 * @retval POS_OK       The application is no longer registered.
 * @retval POS_FAILURE  The application was not registered (nothing is shown), or the server refused. After a
 *                      refusal it stays registered.
 */
POS_EXPORT uint32_t posUnregisterApplication(uint32_t applicationId);

/**
 * Creates an object of a class in the server. If the server's reply contains a message for the user, the
 * library shows it before the function returns.
 *
 * @param[in]  applicationId    A registered application.
 * @param[in]  classId          Handle of the class identifier.
 * @param[out] objectId         *objectId receives a new block of POS_IDENTIFIER_SIZE bytes with the object's
 *                              identifier. The host frees it with posFreeDllHeapData.
 *
 * @retval POS_OK       The object exists.
 * @retval POS_FAILURE  The application is not registered (nothing is shown), a pointer is null, or the
 *                      server refused. If the application did not register the class, the library itself
 *                      fails the call only if the server asked for this check at registration. Otherwise the
 *                      server decides.
 */
POS_EXPORT uint32_t posInstantiateObject(uint32_t applicationId, void** classId, void** objectId);

/**
 * Creates an object of a class in the server, as posInstantiateObject does. The executer has no effect.
 *
 * @param[in]  applicationId    A registered application.
 * @param[in]  executerId       Not used; may be null.
 * @param[in]  classId          As for posInstantiateObject.
 * @param[out] objectId         As for posInstantiateObject.
 *
 * @retval POS_OK       The object exists.
 * @retval POS_FAILURE  As for posInstantiateObject.
 */
POS_EXPORT uint32_t posInstantiateObjectOnExecuter(uint32_t applicationId, void** executerId, void** classId,
                                                   void** objectId);

/**
 * Calls a method of an object. If the server's reply contains a message for the user, the library shows it
 * before the function returns.
 *
 * @param[in]  applicationId    A registered application.
 * @param[in]  objectId         Handle of the object identifier.
 * @param[in]  methodName       Name of the method.
 * @param[in]  parameters       Parameter bytes. May be null if parameterLength is 0.
 * @param[in]  parameterLength  Number of bytes in parameters.
 * @param[out] result           *result receives the result: a block that the host frees with
 *                              posDeleteDLLHeapData, or null if the result is empty.
 * @param[out] resultLength     Receives the number of bytes in the result.
 *
 * @retval POS_OK       The method ran.
 * @retval POS_FAILURE  The application is not registered (nothing is shown), a pointer is null, the object or
 *                      the method does not exist, or the method failed.
 */
POS_EXPORT uint32_t posCallMethod(uint32_t applicationId, void** objectId, const char* methodName,
                                  uint8_t* parameters, uint32_t parameterLength, uint8_t** result,
                                  uint32_t* resultLength);

/**
 * Calls a method of an object on an executer. Apart from that it does the same as posCallMethod.
 *
 * @param[in]  applicationId    A registered application.
 * @param[in]  executerId       Handle of the executer identifier. A null handle means "no executer", and so
 *                              does a handle that points to a null pointer.
 * @param[in]  objectId         As for posCallMethod.
 * @param[in]  methodName       As for posCallMethod.
 * @param[in]  parameters       As for posCallMethod.
 * @param[in]  parameterLength  As for posCallMethod.
 * @param[out] result           As for posCallMethod.
 * @param[out] resultLength     As for posCallMethod.
 *
 * @retval POS_OK       The method ran.
 * @retval POS_FAILURE  As for posCallMethod.
 */
POS_EXPORT uint32_t posCallMethodOnExecuter(uint32_t applicationId, void** executerId, void** objectId,
                                            const char* methodName, uint8_t* parameters,
                                            uint32_t parameterLength, uint8_t** result,
                                            uint32_t* resultLength);

/**
 * Deletes an object in the server. The host still frees the block with the object's identifier.
 *
 * @param[in]  applicationId    A registered application.
 * @param[in]  objectId         Handle of the object identifier.
 *
 * @retval POS_OK       The object is deleted.
 * @retval POS_FAILURE  The application is not registered (nothing is shown), a pointer is null, or the object
 *                      does not exist.
 */
POS_EXPORT uint32_t posDeleteObject(uint32_t applicationId, void** objectId);

/**
 * Fetches a block of information from the server. The library itself makes the block for one request: the two
 * bytes 0x60 0x01 (352, least significant byte first). Its block has 4 bytes and holds the interface version,
 * 7. This request needs neither a server nor a registered application.
 *
 * @param[in]  applicationId    Sent to the server. The application need not be registered.
 * @param[in]  request          Request bytes. Must not be null, even if requestLength is 0.
 * @param[in]  requestLength    Number of bytes in request.
 * @param[out] info             *info receives the information: a block that the host frees with
 *                              posDeleteDLLHeapData, or null if the information is empty.
 * @param[out] infoLength       Receives the number of bytes in the block.
 *
 * @retval POS_OK       The outputs hold the information.
 * @retval POS_FAILURE  A pointer is null, there is no server, the server refused, or the block has 2^31
 *                      bytes or more.
 */
POS_EXPORT uint32_t posGetInfo(uint32_t applicationId, const void* request, uint32_t requestLength,
                               uint8_t** info, int32_t* infoLength);

/**
 * Runs a command in the server.
 *
 * @param[in]  applicationId    A registered application.
 * @param[in]  command          Handle of the command's bytes. The handle may point to a null pointer if
 *                              commandLength is 0.
 * @param[in]  commandLength    Number of bytes in the command.
 * @param[in]  argument         Handle of the argument's bytes. The handle may point to a null pointer if
 *                              argumentLength is 0.
 * @param[in]  argumentLength   Number of bytes in the argument.
 * @param[out] result           As for posCallMethod.
 * @param[out] resultLength     As for posCallMethod.
 *
 * @retval POS_OK       The command ran.
 * @retval POS_FAILURE  The application is not registered (nothing is shown), a pointer is null, the command
 *                      does not exist, or the command failed.
 */
POS_EXPORT uint32_t posExecuteCMD(uint32_t applicationId, void** command, uint32_t commandLength,
                                  void** argument, uint32_t argumentLength, uint8_t** result,
                                  uint32_t* resultLength);

/**
 * Frees a block that posCallMethod, posCallMethodOnExecuter, posExecuteCMD or posGetInfo returned. Needs no
 * session.
 *
 * @param[in]  data     The block. Null is ignored.
 *
 * @retval POS_OK       Always.
 */
POS_EXPORT uint32_t posDeleteDLLHeapData(uint8_t* data);

/**
 * Frees an object identifier that posInstantiateObject or posInstantiateObjectOnExecuter returned. Needs no
 * session. The results of the other calls come from another allocator, so they must not be passed to this
 * function.
 *
 * @param[in]  data     The block with the identifier. Null is ignored.
 *
 * @retval POS_OK       Always.
 */
POS_EXPORT uint32_t posFreeDllHeapData(void* data);

#ifdef __cplusplus
}
#endif

#endif
