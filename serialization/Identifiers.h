// The identifiers of classes, objects and executers. Each is a byte array with a type of its own, so that the
// compiler rejects one in place of another. They compare and copy as byte arrays do. So the assignment of an
// empty identifier changes nothing, and a copy is empty if memory runs out. A move allocates no memory.
#pragma once

#include <utility>

#include "serialization/CPPByteArray.h"

namespace dovrel {

/// The base class of the identifiers by which classes and objects are found.
class CPPKey : public CPPByteArray {
  public:
    CPPKey() = default;
    explicit CPPKey(const CPPByteArray& bytes) : CPPByteArray(bytes) {}
    explicit CPPKey(CPPByteArray&& bytes) noexcept : CPPByteArray(std::move(bytes)) {}
    CPPKey(const CPPKey&) = default;
    CPPKey(CPPKey&&) noexcept = default;
    CPPKey& operator=(const CPPKey&) = default;
    ~CPPKey() override;
};

class CPPClassID : public CPPKey {
  public:
    CPPClassID() = default;
    explicit CPPClassID(const CPPByteArray& bytes) : CPPKey(bytes) {}
    explicit CPPClassID(CPPByteArray&& bytes) noexcept : CPPKey(std::move(bytes)) {}
    CPPClassID(const CPPClassID&) = default;
    CPPClassID(CPPClassID&&) noexcept = default;
    CPPClassID& operator=(const CPPClassID&) = default;
    ~CPPClassID() override;
};

class CPPObjectID : public CPPKey {
  public:
    CPPObjectID() = default;
    explicit CPPObjectID(const CPPByteArray& bytes) : CPPKey(bytes) {}
    explicit CPPObjectID(CPPByteArray&& bytes) noexcept : CPPKey(std::move(bytes)) {}
    CPPObjectID(const CPPObjectID&) = default;
    CPPObjectID(CPPObjectID&&) noexcept = default;
    CPPObjectID& operator=(const CPPObjectID&) = default;
    ~CPPObjectID() override;
};

/// Identifies an executer, a unit of the server on which an object may be placed.
class ProtectedExecuterID : public CPPByteArray {
  public:
    ProtectedExecuterID() = default;
    explicit ProtectedExecuterID(const CPPByteArray& bytes) : CPPByteArray(bytes) {}
    explicit ProtectedExecuterID(CPPByteArray&& bytes) noexcept : CPPByteArray(std::move(bytes)) {}
    ProtectedExecuterID(const ProtectedExecuterID&) = default;
    ProtectedExecuterID(ProtectedExecuterID&&) noexcept = default;
    ProtectedExecuterID& operator=(const ProtectedExecuterID&) = default;
    ~ProtectedExecuterID() override;
};

}  // namespace dovrel
