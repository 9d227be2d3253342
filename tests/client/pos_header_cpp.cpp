// Holds that the public header is one of C++, too, and that its functions have C's linkage.
#include "dovrel/pos.h"

extern "C" uint32_t InitializePOS(void);
extern "C" uint32_t posFreeDllHeapData(void*);
