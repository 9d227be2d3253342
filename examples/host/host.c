/*
 * A host in plain C. It loads the library as a bundle, registers with the server, uses a Digest object there to
 * compute the MD5 of a file, and unregisters. On the way it also uses the other operations.
 *
 *     host BUNDLE FILE
 *
 * BUNDLE is the path of Dovrel.bundle. The digest is printed on a line of its own that begins with "digest: ".
 */
#include <errno.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "dovrel/pos.h"
#include "dovrel/pos_functions.h"

/* The content of a file. */
typedef struct File {
    uint8_t* bytes;
    uint32_t size;
} File;

/* Enlarges the buffer so that at least one more byte fits. Returns 0 on failure. */
static int growFile(File* file, size_t* room) {
    const size_t larger = *room == 0 ? 65536 : 2 * *room;
    uint8_t* bytes = larger <= 0x80000000u ? realloc(file->bytes, larger) : NULL;

    if (bytes == NULL) return 0;
    file->bytes = bytes;
    *room = larger;
    return 1;
}

/* Reads a file up to its end, because the size of some files (pipes, /proc) is not known. Returns 0 on failure. */
static int readFile(const char* path, File* file) {
    FILE* stream = fopen(path, "rb");
    size_t room = 0;
    int fits = 1;

    file->bytes = NULL;
    file->size = 0;
    if (stream == NULL) {
        fprintf(stderr, "host: %s: %s\n", path, strerror(errno));
        return 0;
    }
    while (!feof(stream) && !ferror(stream) && fits) {
        fits = file->size < room || growFile(file, &room);
        if (fits) file->size += (uint32_t)fread(file->bytes + file->size, 1, room - file->size, stream);
    }
    if (ferror(stream)) fprintf(stderr, "host: %s: %s\n", path, strerror(errno));
    if (!fits) fprintf(stderr, "host: %s is too large\n", path);
    fits = fits && !ferror(stream);
    fclose(stream);
    return fits;
}

/* Identifiers are 16 bytes. For the server's built-in classes, it is the name padded with zero bytes. */
static void setIdentifier(uint8_t identifier[POS_IDENTIFIER_SIZE], const char* name) {
    memset(identifier, 0, POS_IDENTIFIER_SIZE);
    memcpy(identifier, name, strlen(name));
}

/* Prints a result of the server and frees its block. */
static void printAndFree(const posFunctions* library, const char* label, uint8_t* bytes, uint32_t length) {
    printf("%s", label);
    fwrite(bytes, 1, length, stdout);
    printf("\n");
    library->posDeleteDLLHeapData(bytes);
}

/* Prints the interface version. The library answers only this information request itself. */
static int showInterfaceVersion(const posFunctions* library, uint32_t application) {
    const uint8_t request[2] = {0x60, 0x01};
    uint8_t* info = NULL;
    int32_t length = 0;

    if (library->posGetInfo(application, request, sizeof request, &info, &length) != POS_OK || length != 4)
        return 0;
    printf("interface version: %u\n", (unsigned)info[0]);
    library->posDeleteDLLHeapData(info);
    return 1;
}

static int runCommand(const posFunctions* library, uint32_t application, const char* text,
                      const char* label) {
    char bytes[32];
    void* command = bytes;
    void* argument = NULL;
    uint8_t* result = NULL;
    uint32_t length = 0;

    snprintf(bytes, sizeof bytes, "%s", text);
    if (library->posExecuteCMD(application, &command, (uint32_t)strlen(text), &argument, 0, &result,
                               &length) != POS_OK)
        return 0;
    printAndFree(library, label, result, length);
    return 1;
}

/* Creates a Digest object in the server, calls its method for the MD5 of the file, and deletes the object. */
static int digestInServer(const posFunctions* library, uint32_t application, void* classId,
                          const File* file) {
    void* object = NULL;
    uint8_t* result = NULL;
    uint32_t length = 0;
    int done;

    if (library->posInstantiateObject(application, &classId, &object) != POS_OK) return 0;
    done = library->posCallMethod(application, &object, "md5", file->bytes, file->size, &result, &length) ==
           POS_OK;
    if (done) printAndFree(library, "digest: ", result, length);
    done = library->posDeleteObject(application, &object) == POS_OK && done;
    library->posFreeDllHeapData(object);
    return done;
}

static int useServer(const posFunctions* library, const File* file) {
    uint8_t digestClass[POS_IDENTIFIER_SIZE];
    void* classes[1];
    uint32_t application = 0;
    int done;

    setIdentifier(digestClass, "Digest");
    classes[0] = digestClass;
    if (library->posRegisterApplicationWithClasses("Dovrel example host", classes, 1, NULL, 0,
                                                   &application) != POS_OK)
        return 0;
    done = showInterfaceVersion(library, application) &&
           runCommand(library, application, "version", "server: ") &&
           digestInServer(library, application, digestClass, file);
    return library->posUnregisterApplication(application) == POS_OK && done;
}

int main(int argc, char** argv) {
    posFunctions library;
    File file = {NULL, 0};
    const char* failure;
    int done;

    if (argc != 3) {
        fprintf(stderr, "usage: host BUNDLE FILE\n");
        return 2;
    }
    failure = posLoadFunctions(argv[1], &library);
    if (failure != NULL) {
        fprintf(stderr, "host: %s\n", failure);
        return 1;
    }
    if (!readFile(argv[2], &file)) {
        free(file.bytes);
        return 1;
    }
    library.InitializePOS();
    done = useServer(&library, &file);
    library.TerminatePOS();
    posUnloadFunctions(&library);
    free(file.bytes);
    if (!done) fprintf(stderr, "host: a call failed; the alert, or the message above, says why\n");
    return done ? 0 : 1;
}
