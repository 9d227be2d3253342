#include "bundle/FoundationEntries.h"

#include "portability/tasks/MainRunLoop.h"
#include "ui/information/PropertyListFormat.h"

const portability::FoundationEntries dovrelFoundationEntries = {sizeof(portability::FoundationEntries),
                                                                DOVREL_VERSION,
                                                                portability::useFoundation,
                                                                dovrel::runModalAlert,
                                                                dovrel::formatPropertyList,
                                                                portability::runOnMainRunLoop,
                                                                dovrel::systemReport};
