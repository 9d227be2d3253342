#include <libc.h>
#include <sys/auxv.h>

// AT_SECURE is set by the kernel when the program starts. It also covers capabilities of the program's file.
int issetugid(void) {
    return getauxval(AT_SECURE) != 0 ? 1 : 0;
}
