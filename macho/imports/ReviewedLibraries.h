// The libraries from which a bundle imports. One function per library adds the reviewed imports to the table.
#pragma once

#include "macho/imports/ImportTable.h"

namespace dovrel::macho {

/// The C library, which on macOS is libSystem and includes the BSD functions.
void addSystemLibrary(ImportTable& table);

/// The C++ standard library and its runtime.
void addStandardLibrary(ImportTable& table);

/// The Objective-C runtime.
void addObjectiveCRuntime(ImportTable& table);

/// The frameworks, whose functions are in `portability/` and GNUstep.
void addFrameworks(ImportTable& table);

/// The imports that only images of this process's width have.
void addImportsOfWidth(ImportTable& table);

}  // namespace dovrel::macho
