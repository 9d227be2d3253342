/* Checks that the public headers for C compile as C99. */
#include "dovrel/pos.h"
#include "dovrel/pos_functions.h"
