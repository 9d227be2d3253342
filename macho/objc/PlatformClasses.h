// The platform's classes, as this system has them.
#pragma once

struct objc_class;

namespace dovrel::macho {

/// Returns this system's class for the platform's class of that name; null if there is none. The names differ
/// for NSAlert only.
objc_class* platformClass(const char* name);

}  // namespace dovrel::macho
