// The identifiers of classes, objects and executers: byte arrays with a type of their own, so that one is not
// taken for another. Comparing and copying are those of the byte array; assigning an empty identifier
// therefore changes nothing.
#pragma once

#include "serialization/CPPByteArray.h"

namespace dovrel {

// What classes and objects are found by.
class CPPKey : public CPPByteArray {
  public:
    CPPKey() = default;
    explicit CPPKey(const CPPByteArray& bytes) : CPPByteArray(bytes) {}
    ~CPPKey() override;
};

class CPPClassID : public CPPKey {
  public:
    CPPClassID() = default;
    explicit CPPClassID(const CPPByteArray& bytes) : CPPKey(bytes) {}
    ~CPPClassID() override;
};

class CPPObjectID : public CPPKey {
  public:
    CPPObjectID() = default;
    explicit CPPObjectID(const CPPByteArray& bytes) : CPPKey(bytes) {}
    ~CPPObjectID() override;
};

// Names an executer, the unit of the server on which an object may be placed.
class ProtectedExecuterID : public CPPByteArray {
  public:
    ProtectedExecuterID() = default;
    explicit ProtectedExecuterID(const CPPByteArray& bytes) : CPPByteArray(bytes) {}
    ~ProtectedExecuterID() override;
};

}  // namespace dovrel
