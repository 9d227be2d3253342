/* A host that begins: it loads the bundle, opens a session, registers and executes a command.
 *
 *     startHost BUNDLE [stay]
 *
 * Writes one line: the processor time since exec in microseconds at main, after dlopen, InitializePOS, the registration and
 * the call; then the resident memory in KiB and the number of mapped executables and libraries. With "stay" it then waits for
 * the end of its input.
 */
#include <dlfcn.h>
#include <stdio.h>
#include <string.h>

#include "dovrel/pos.h"
#include "start.h"

/* Through an integer, because ISO C has no conversion from a pointer to an object to a pointer to a function. */
#define FUNCTION(name) ((__typeof__(name)*)(uintptr_t)function(bundle, #name))

static void* function(void* bundle, const char* name) {
    void* const found = dlsym(bundle, name);
    if (found == NULL) refuse(name);
    return found;
}

static void expectSuccess(uint32_t status, const char* what) {
    if (status != POS_OK) refuse(what);
}

static void ping(void* bundle, uint32_t application) {
    char text[] = "pingme";
    void* command = text;
    void* argument = text + 4;
    uint8_t* result = NULL;
    uint32_t length = 0;
    expectSuccess(FUNCTION(posExecuteCMD)(application, &command, 4, &argument, 2, &result, &length),
                  "posExecuteCMD");
    if (length != 2 || memcmp(result, "me", 2) != 0) refuse("a wrong reply");
    FUNCTION(posDeleteDLLHeapData)(result);
}

int main(int count, char** arguments) {
    double times[5] = {processorTime()};
    if (count < 2) refuse("usage: startHost BUNDLE [stay]");
    char path[4096];
    snprintf(path, sizeof path, "%s/Contents/MacOS/Dovrel", arguments[1]);
    void* const bundle = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    if (bundle == NULL) refuse(dlerror());
    times[1] = processorTime();
    expectSuccess(FUNCTION(InitializePOS)(), "InitializePOS");
    times[2] = processorTime();
    uint32_t application = 0;
    expectSuccess(FUNCTION(posRegisterApplicationWithClasses)("Start", NULL, 0, NULL, 0, &application),
                  "registration");
    times[3] = processorTime();
    ping(bundle, application);
    times[4] = processorTime();

    for (int index = 0; index < 5; ++index)
        printf("%.1f ", times[index]);
    printf("%ld %d\n", residentMemory(), mappedLibraries());
    fflush(stdout);
    if (count > 2) getchar();
    FUNCTION(TerminatePOS)();
    return 0;
}
