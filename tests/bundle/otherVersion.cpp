#include "bundle/FoundationEntries.h"

const portability::FoundationEntries dovrelFoundationEntries = {
    sizeof(portability::FoundationEntries), DOVREL_VERSION ".1", nullptr, nullptr, nullptr, nullptr, nullptr};
