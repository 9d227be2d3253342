// Finds the platform's classes on this system.
#pragma once

struct objc_class;

namespace dovrel::macho {

/// Returns this system's class for the platform's class with this name, or null if there is none. Only
/// NSAlert and NSTask have other names here.
objc_class* platformClass(const char* name);

}  // namespace dovrel::macho
