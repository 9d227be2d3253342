/*
 * A host that is linked with the library and also loads the bundle.
 *
 *     both BUNDLE linked|loaded
 *
 * Opens the session through the linked or through the loaded functions and uses it through the others.
 */
#include <dlfcn.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>

#include "dovrel/pos.h"

static void* find(void* library, const char* name) {
    void* const function = dlsym(library, name);

    if (function == NULL) fprintf(stderr, "both: %s\n", dlerror());
    return function;
}

int main(int argc, char** argv) {
    char path[4096];
    void* library;
    uint32_t (*loadedInitialize)(void);
    uint32_t (*loadedTerminate)(void);
    uint32_t (*loadedRegister)(const char*, void**, uint32_t, uint16_t*, uint32_t, uint32_t*);
    uint32_t application = 0;
    uint32_t status;
    int opensLinked;

    if (argc != 3) return 2;
    snprintf(path, sizeof path, "%s/Contents/MacOS/Dovrel", argv[1]);
    library = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    if (library == NULL) {
        fprintf(stderr, "both: %s\n", dlerror());
        return 1;
    }
    *(void**)&loadedInitialize = find(library, "InitializePOS");
    *(void**)&loadedTerminate = find(library, "TerminatePOS");
    *(void**)&loadedRegister = find(library, "posRegisterApplicationWithClasses");
    printf("functions: %s\n", loadedInitialize == InitializePOS ? "the same" : "others");
    opensLinked = strcmp(argv[2], "linked") == 0;
    (opensLinked ? InitializePOS : loadedInitialize)();
    status = (opensLinked ? loadedRegister : posRegisterApplicationWithClasses)("Both", NULL, 0, NULL, 0,
                                                                                &application);
    printf("registered: %u\n", (unsigned)status);
    status = posUnregisterApplication(application);
    printf("unregistered: %u\n", (unsigned)status);
    loadedTerminate();
    return 0;
}
