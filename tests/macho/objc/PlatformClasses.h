// The platform's classes, as this system has them.
#pragma once

struct objc_class;

namespace dovrel::macho {

/// The class that stands for the platform's class of that name; null if there is none. Most have the same
/// name here.
objc_class* platformClass(const char* name);

}  // namespace dovrel::macho
