// Core Foundation's objects. Private to the layer.
//
// A reference (CFTypeRef and similar types) is the address of an Object. Objects are immutable, so all
// threads may read them.
#pragma once

#include <CoreFoundation/CFBase.h>

#include <atomic>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace portability {

/// The type IDs of the kinds of objects. The platform promises only that they are different.
enum ObjectKind : CFTypeID {
    kStringKind = 7,
    kDictionaryKind = 18,
    kArrayKind = 19,
    kDataKind = 20,
    kBooleanKind = 21,
    kNumberKind = 22,
    kErrorKind = 27,
    kURLKind = 29,
    kBundleKind = 30,
    kDateKind = 42
};

/// A reference-counted object. A new object has one reference, which its creator owns.
class Object {
  public:
    explicit Object(ObjectKind kind) : kind_(kind) {}
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

    ObjectKind kind() const { return kind_; }

    void retain() const { references_.fetch_add(1, std::memory_order_relaxed); }

    /// Releases one reference. Destroys the object if it was the last one.
    virtual void release() const {
        if (releasesLast()) delete this;
    }

  protected:
    virtual ~Object() = default;

    bool releasesLast() const { return references_.fetch_sub(1, std::memory_order_acq_rel) == 1; }

  private:
    const ObjectKind kind_;
    mutable std::atomic<long> references_{1};
};

/// Returns the object of a reference. A null reference ends the program, as on the platform.
const Object& toObject(CFTypeRef reference);

/// Owns one reference, which may be null. The destructor releases it.
class ObjectHolder {
  public:
    /// Takes the ownership of a reference.
    explicit ObjectHolder(const Object* object = nullptr) : object_(object) {}
    ObjectHolder(ObjectHolder&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    ObjectHolder& operator=(ObjectHolder&& other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }
    ~ObjectHolder() {
        if (object_ != nullptr) object_->release();
    }

    explicit operator bool() const { return object_ != nullptr; }
    const Object* get() const { return object_; }

    /// Passes the ownership of the reference to the caller.
    const Object* release() { return std::exchange(object_, nullptr); }

  private:
    const Object* object_;
};

}  // namespace portability

struct __CFString final : portability::Object {
    explicit __CFString(std::vector<UniChar> itsUnits)
        : Object(portability::kStringKind), units(std::move(itsUnits)) {}

    /// Returns the text in UTF-8. Returns the empty string if the text contains an unpaired surrogate.
    std::string utf8() const;

    const std::vector<UniChar> units;
};

struct __CFArray final : portability::Object {
    using Values = std::vector<portability::ObjectHolder>;

    explicit __CFArray(Values itsValues) : Object(portability::kArrayKind), values(std::move(itsValues)) {}

    const Values values;
};

struct __CFDictionary final : portability::Object {
    /// Ordered by the UTF-16 units of the keys, which are always strings.
    using Values = std::map<std::vector<UniChar>, portability::ObjectHolder>;

    explicit __CFDictionary(Values itsValues)
        : Object(portability::kDictionaryKind), values(std::move(itsValues)) {}

    /// Returns the value of the key. Returns null if there is none or the key is not a string.
    const portability::Object* value(CFTypeRef key) const;

    const Values values;
};

struct __CFData final : portability::Object {
    explicit __CFData(std::string itsBytes) : Object(portability::kDataKind), bytes(std::move(itsBytes)) {}

    const std::string bytes;
};

struct __CFNumber final : portability::Object {
    explicit __CFNumber(long long value)
        : Object(portability::kNumberKind), isReal(false), integer(value), real(static_cast<double>(value)) {}
    explicit __CFNumber(double value)
        : Object(portability::kNumberKind), isReal(true), integer(0), real(value) {}

    const bool isReal;
    const long long integer;  ///< 0 if isReal
    const double real;
};

struct __CFBoolean final : portability::Object {
    explicit __CFBoolean(bool itsValue) : Object(portability::kBooleanKind), value(itsValue) {}

    const bool value;
};

struct __CFDate final : portability::Object {
    explicit __CFDate(double since2001) : Object(portability::kDateKind), time(since2001) {}

    const double time;  ///< seconds since 1 January 2001, 00:00 UTC
};

struct __CFError final : portability::Object {
    __CFError(CFStringRef itsDomain, CFIndex itsCode)
        : Object(portability::kErrorKind), domain(itsDomain), code(itsCode) {}

    const CFStringRef domain;  ///< a constant string, not owned
    const CFIndex code;
};

struct __CFURL final : portability::Object {
    /// `utf8` must be escaped, so it contains only ASCII characters.
    explicit __CFURL(const std::string& utf8)
        : Object(portability::kURLKind), text(utf8), string(newText(utf8)) {}

    const std::string text;
    const portability::ObjectHolder string;  ///< `text` as an object

  private:
    static portability::ObjectHolder newText(const std::string& utf8);
};

namespace portability {

/// Creates a string from UTF-8 text. Returns an empty holder if the text is not valid UTF-8.
ObjectHolder newString(std::string_view utf8);

/// Returns the text of `value` in UTF-8. Returns the empty string if `value` is null, is not a string, or
/// cannot be expressed in UTF-8.
std::string toUtf8(CFTypeRef value);

}  // namespace portability
