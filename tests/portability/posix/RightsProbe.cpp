// Exits with the result of issetugid.
#include <libc.h>

int main() {
    // _exit instead of exit, because a leak checker cannot inspect a set-id program.
    _exit(issetugid());
}
