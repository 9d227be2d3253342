#pragma once
#include_next <limits.h>
#define PATH_MAX 1024
#define NAME_MAX 255
