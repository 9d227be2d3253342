// Core Foundation's objects. Private to the layer.
//
// A reference (CFTypeRef and its like) is the address of an Object. Objects do not change once they are made,
// so any thread may read them.
#pragma once

#include <CoreFoundation/CFBase.h>

#include <atomic>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace portability {

/// The numbers of the kinds of objects. The platform promises only that they differ.
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

/// Counts its references. It is made with one, which belongs to the maker.
class Object {
  public:
    explicit Object(ObjectKind kind) : kind_(kind) {}
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

    ObjectKind kind() const { return kind_; }

    void retain() const { references_.fetch_add(1, std::memory_order_relaxed); }

    /// The last one destroys the object.
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

/// The object behind a reference. A null reference ends the program, as it does on the platform.
const Object& objectOf(CFTypeRef reference);

/// One reference, which may be null, released at the end.
class ObjectHolder {
  public:
    /// Takes over a reference.
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

    /// Passes the reference on.
    const Object* release() { return std::exchange(object_, nullptr); }

  private:
    const Object* object_;
};

}  // namespace portability

struct __CFString final : portability::Object {
    explicit __CFString(std::vector<UniChar> itsUnits)
        : Object(portability::kStringKind), units(std::move(itsUnits)) {}

    /// In UTF-8; empty if it holds half a surrogate pair.
    std::string utf8() const;

    const std::vector<UniChar> units;
};

struct __CFArray final : portability::Object {
    using Values = std::vector<portability::ObjectHolder>;

    explicit __CFArray(Values itsValues) : Object(portability::kArrayKind), values(std::move(itsValues)) {}

    const Values values;
};

struct __CFDictionary final : portability::Object {
    /// By the units of the keys, which are strings.
    using Values = std::map<std::vector<UniChar>, portability::ObjectHolder>;

    explicit __CFDictionary(Values itsValues)
        : Object(portability::kDictionaryKind), values(std::move(itsValues)) {}

    /// Null without a value, and for a key that is not a string.
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
    const long long integer;  ///< 0 in a real number
    const double real;
};

struct __CFBoolean final : portability::Object {
    explicit __CFBoolean(bool itsValue) : Object(portability::kBooleanKind), value(itsValue) {}

    const bool value;
};

struct __CFDate final : portability::Object {
    explicit __CFDate(double since2001) : Object(portability::kDateKind), time(since2001) {}

    const double time;  ///< seconds since the beginning of 2001, UTC
};

struct __CFError final : portability::Object {
    __CFError(CFStringRef itsDomain, CFIndex itsCode)
        : Object(portability::kErrorKind), domain(itsDomain), code(itsCode) {}

    const CFStringRef domain;  ///< a constant
    const CFIndex code;
};

struct __CFURL final : portability::Object {
    /// `utf8` is escaped, so it is plain ASCII.
    explicit __CFURL(const std::string& utf8)
        : Object(portability::kURLKind), text(utf8), string(newText(utf8)) {}

    const std::string text;
    const portability::ObjectHolder string;  ///< the same as an object

  private:
    static portability::ObjectHolder newText(const std::string& utf8);
};

namespace portability {

/// A new string of a text in UTF-8; empty if it is not valid.
ObjectHolder newString(std::string_view utf8);

/// The string, in UTF-8, that `value` is; empty if it is null, of another kind, or not expressible.
std::string utf8Of(CFTypeRef value);

}  // namespace portability
