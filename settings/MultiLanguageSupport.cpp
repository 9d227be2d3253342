#include "settings/MultiLanguageSupport.h"
