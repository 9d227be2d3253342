#pragma once
#include "_base.h"
#define NL_CAT_LOCALE 1
typedef struct __nl_cat_d* nl_catd;
typedef int nl_item;
DARWIN_C_BEGIN
nl_catd catopen(const char*, int);
char* catgets(nl_catd, int, int, const char*);
int catclose(nl_catd);
DARWIN_C_END
