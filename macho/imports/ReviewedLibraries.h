// The libraries that a bundle imports from, one function for each; it enters what has been reviewed.
#pragma once

#include "macho/imports/ImportTable.h"

namespace dovrel::macho {

/// The C library, which on macOS is the system's, with the BSD calls.
void addSystemLibrary(ImportTable& table);

/// The C++ standard library with its runtime.
void addStandardLibrary(ImportTable& table);

/// Objective-C's runtime.
void addObjectiveCRuntime(ImportTable& table);

/// The frameworks, of which `portability/` and GNUstep have the calls.
void addFrameworks(ImportTable& table);

/// What images of this process's width import of all those, and others do not.
void addImportsOfWidth(ImportTable& table);

}  // namespace dovrel::macho
