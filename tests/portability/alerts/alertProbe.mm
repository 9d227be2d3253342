// Exits with what NSApplicationLoad says.
#import <AppKit/AppKit.h>
#include <unistd.h>

int main() {
    // Not by way of exit: a leak checker cannot look into a program with rights of its own.
    _exit(NSApplicationLoad());
}
