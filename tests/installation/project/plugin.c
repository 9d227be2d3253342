#include "dovrel/pos.h"

/* Returns the address of InitializePOS as this plug-in calls it. */
void* linkedFunction(void);

void* linkedFunction(void) {
    return *(void**)&(uint32_t(*)(void)){InitializePOS};
}
