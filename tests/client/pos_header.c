/* Holds that the public header is a header of C99 on its own. */
#include "dovrel/pos.h"
