/* Checks that the public header compiles on its own as C99. */
#include "dovrel/pos.h"
