// Exits with what issetugid says.
#include <libc.h>

int main() {
    // Not by way of exit: a leak checker cannot look into a program with rights of its own.
    _exit(issetugid());
}
