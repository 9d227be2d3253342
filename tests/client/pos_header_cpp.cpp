// Checks that the public header also compiles as C++, and that its functions have C linkage.
#include "dovrel/pos.h"

extern "C" uint32_t InitializePOS(void);
extern "C" uint32_t posFreeDllHeapData(void*);
