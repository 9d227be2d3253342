// Exits with the result of NSApplicationLoad.
#import <AppKit/AppKit.h>
#include <unistd.h>

int main() {
    // _exit instead of exit, because a leak checker cannot inspect a set-id program.
    _exit(NSApplicationLoad());
}
