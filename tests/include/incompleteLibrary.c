#include <stdint.h>

__attribute__((visibility("default"))) uint32_t InitializePOS(void);

uint32_t InitializePOS(void) {
    return 0;
}
