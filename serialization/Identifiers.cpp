#include "serialization/Identifiers.h"

namespace dovrel {

CPPKey::~CPPKey() = default;

CPPClassID::~CPPClassID() = default;

CPPObjectID::~CPPObjectID() = default;

ProtectedExecuterID::~ProtectedExecuterID() = default;

}  // namespace dovrel
