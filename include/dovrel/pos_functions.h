/**
 * @file
 * The functions of Dovrel for hosts that load the library at run time, in C99 and C++. A host that is linked
 * with the library does not need this header.
 *
 *     posFunctions pos;
 *     const char* failure = posLoadFunctions("/path/of/Dovrel.bundle", &pos);
 *     if (failure == NULL) pos.InitializePOS();
 *
 * The contract of each function is in dovrel/pos.h. On systems whose C library has no dlopen of its own, link
 * with -ldl.
 */
#ifndef DOVREL_POS_FUNCTIONS_H
#define DOVREL_POS_FUNCTIONS_H

#include <dlfcn.h>
#include <stddef.h>
#include <stdint.h>
#include <string.h>

#include "dovrel/pos.h"

#ifdef __cplusplus
extern "C" {
#endif

/** The type of InitializePOS. */
typedef uint32_t InitializePOSFunction(void);
/** The type of TerminatePOS. */
typedef uint32_t TerminatePOSFunction(void);
/** The type of posRegisterApplicationWithClasses. */
typedef uint32_t posRegisterApplicationWithClassesFunction(const char* applicationName, void** classList,
                                                           uint32_t classCount, uint16_t* options,
                                                           uint32_t optionsLength, uint32_t* applicationId);
/** The type of posUnregisterApplication. */
typedef uint32_t posUnregisterApplicationFunction(uint32_t applicationId);
/** The type of posInstantiateObject. */
typedef uint32_t posInstantiateObjectFunction(uint32_t applicationId, void** classId, void** objectId);
/** The type of posInstantiateObjectOnExecuter. */
typedef uint32_t posInstantiateObjectOnExecuterFunction(uint32_t applicationId, void** executerId,
                                                        void** classId, void** objectId);
/** The type of posCallMethod. */
typedef uint32_t posCallMethodFunction(uint32_t applicationId, void** objectId, const char* methodName,
                                       uint8_t* parameters, uint32_t parameterLength, uint8_t** result,
                                       uint32_t* resultLength);
/** The type of posCallMethodOnExecuter. */
typedef uint32_t posCallMethodOnExecuterFunction(uint32_t applicationId, void** executerId, void** objectId,
                                                 const char* methodName, uint8_t* parameters,
                                                 uint32_t parameterLength, uint8_t** result,
                                                 uint32_t* resultLength);
/** The type of posDeleteObject. */
typedef uint32_t posDeleteObjectFunction(uint32_t applicationId, void** objectId);
/** The type of posGetInfo. */
typedef uint32_t posGetInfoFunction(uint32_t applicationId, const void* request, uint32_t requestLength,
                                    uint8_t** info, int32_t* infoLength);
/** The type of posExecuteCMD. */
typedef uint32_t posExecuteCMDFunction(uint32_t applicationId, void** command, uint32_t commandLength,
                                       void** argument, uint32_t argumentLength, uint8_t** result,
                                       uint32_t* resultLength);
/** The type of posDeleteDLLHeapData. */
typedef uint32_t posDeleteDLLHeapDataFunction(uint8_t* data);
/** The type of posFreeDllHeapData. */
typedef uint32_t posFreeDllHeapDataFunction(void* data);

/** Calls the macro `DO` with the name of each function. */
#define POS_FOR_EACH_FUNCTION(DO)         \
    DO(InitializePOS)                     \
    DO(TerminatePOS)                      \
    DO(posRegisterApplicationWithClasses) \
    DO(posUnregisterApplication)          \
    DO(posInstantiateObject)              \
    DO(posInstantiateObjectOnExecuter)    \
    DO(posCallMethod)                     \
    DO(posCallMethodOnExecuter)           \
    DO(posDeleteObject)                   \
    DO(posGetInfo)                        \
    DO(posExecuteCMD)                     \
    DO(posDeleteDLLHeapData)              \
    DO(posFreeDllHeapData)

/** The functions of a loaded library. Each member has the name of its function. */
typedef struct posFunctions {
    void* library; /**< The handle of the library, or null if no library is loaded. */
/** For the members below. */
#define POS_DECLARE_MEMBER(name) name##Function* name;
    POS_FOR_EACH_FUNCTION(POS_DECLARE_MEMBER)
#undef POS_DECLARE_MEMBER
} posFunctions;

/**
 * The name of the library on Linux. Every library of this major version has it, also one that was loaded as
 * a bundle.
 */
#define POS_LIBRARY_NAME POS_LIBRARY_NAME_OF(POS_VERSION_MAJOR)
/** For POS_LIBRARY_NAME. */
#define POS_LIBRARY_NAME_OF(version) POS_LIBRARY_NAME_WITH(version)
/** For POS_LIBRARY_NAME. */
#define POS_LIBRARY_NAME_WITH(version) "libdovrel.so." #version

/**
 * Looks up one function of a library. For posLoadFunctions.
 *
 * @param[in]  library   Handle of a library.
 * @param[in]  name      Name of the function.
 * @param[out] function  Address of a pointer to a function, which receives the address; null after a failure.
 *
 * @return 1, or 0 if the library does not have the function.
 */
static inline int posFindFunction(void* library, const char* name, void* function) {
    void* const address = dlsym(library, name);

    /* ISO C does not convert a pointer to data into a pointer to a function. On POSIX systems both have the same
       bytes, so these are copied. */
    memcpy(function, &address, sizeof address);
    return address != NULL;
}

/**
 * Closes the library. The session must have been closed before, and the functions must not be called any more.
 * The library itself stays in memory on Linux.
 *
 * @param[in,out] functions  Functions that posLoadFunctions has set; all members are null afterwards.
 */
static inline void posUnloadFunctions(posFunctions* functions) {
    if (functions->library != NULL) dlclose(functions->library);
    memset(functions, 0, sizeof *functions);
}

/**
 * @def POS_FIND_FUNCTION
 * For posLoadFunctions.
 */

/**
 * Loads the library and finds its functions. If this process has already loaded a library of this major
 * version (for example because a plug-in is linked with it), the function takes that library, wherever it is,
 * because a process has one session.
 *
 * @param[in]  bundle     Path of Dovrel.bundle. Null: the system's loader searches for the library by its name.
 * @param[out] functions  Receives the functions; all members are null after a failure.
 *
 * @return Null, or the reason of a failure: a text for developers, valid until this thread calls dlopen,
 *         dlsym or dlerror again.
 */
static inline const char* posLoadFunctions(const char* bundle, posFunctions* functions) {
    static const char executable[] = "/Contents/MacOS/Dovrel";
    char path[4096];
    const size_t length = bundle != NULL ? strlen(bundle) : 0;
    const char* failure = NULL;

    memset(functions, 0, sizeof *functions);
    if (length > sizeof path - sizeof executable) return "the path of the bundle is too long";
    functions->library = dlopen(POS_LIBRARY_NAME, RTLD_NOW | RTLD_LOCAL | RTLD_NOLOAD);
    if (functions->library == NULL && bundle == NULL)
        functions->library = dlopen(POS_LIBRARY_NAME, RTLD_NOW | RTLD_LOCAL);
    if (functions->library == NULL && bundle != NULL) {
        memcpy(path, bundle, length);
        memcpy(path + length, executable, sizeof executable);
        functions->library = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    }
    if (functions->library == NULL) return dlerror();
#define POS_FIND_FUNCTION(name)                                                           \
    if (failure == NULL && !posFindFunction(functions->library, #name, &functions->name)) \
        failure = "the library has no function " #name;
    POS_FOR_EACH_FUNCTION(POS_FIND_FUNCTION)
#undef POS_FIND_FUNCTION
    if (failure != NULL) posUnloadFunctions(functions);
    return failure;
}

#ifdef __cplusplus
}
#endif

#endif
