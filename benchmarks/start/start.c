#include "start.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>

double processorTime(void) {
    struct timespec now;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return (double)now.tv_sec * 1e6 + (double)now.tv_nsec / 1e3;
}

long residentMemory(void) {
    long size = 0;
    long resident = 0;
    FILE* const file = fopen("/proc/self/statm", "r");
    if (file == NULL || fscanf(file, "%ld %ld", &size, &resident) != 2) refuse("/proc/self/statm");
    fclose(file);
    return resident * 4;
}

/* Only the first mapping of a file has the offset 0. */
int mappedLibraries(void) {
    char line[4096];
    int count = 0;
    FILE* const file = fopen("/proc/self/maps", "r");
    if (file == NULL) refuse("/proc/self/maps");
    while (fgets(line, sizeof line, file) != NULL) {
        unsigned long offset = 1;
        if (sscanf(line, "%*s %*s %lx", &offset) == 1 && offset == 0 && strchr(line, '/') != NULL) ++count;
    }
    fclose(file);
    return count;
}

void refuse(const char* reason) {
    fprintf(stderr, "%s\n", reason);
    exit(1);
}
