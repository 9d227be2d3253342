#include <libc.h>
#include <sys/auxv.h>

// The kernel's word at the start of the program, which also counts capabilities that its file gave it.
int issetugid(void) {
    return getauxval(AT_SECURE) != 0 ? 1 : 0;
}
