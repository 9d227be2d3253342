// Helpers for the sources that work with Foundation's objects. Private to the layer; for Objective-C++ only.
//
// No exception of Foundation may reach the C++ code above: what can raise is called inside a small function
// with
// @try and @catch (...), which has no C++ code to unwind.
#pragma once

#import <Foundation/Foundation.h>

#include <CoreFoundation/CFBase.h>

#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace portability {

/// Frees what Foundation autoreleases while it exists, so that nothing is left behind in a thread without a
/// pool.
class AutoreleasePool {
   public:
    AutoreleasePool() : pool_([[NSAutoreleasePool alloc] init]) {}
    ~AutoreleasePool() { [pool_ release]; }
    AutoreleasePool(const AutoreleasePool&) = delete;
    AutoreleasePool& operator=(const AutoreleasePool&) = delete;

   private:
    NSAutoreleasePool* pool_;
};

/// The object behind a reference. A null reference ends the program, as it does on the platform, where a
/// message to nil would go unnoticed.
template <typename Object = id>
Object objectOf(CFTypeRef reference) {
    if (reference == nullptr) {
        std::abort();
    }
    return (Object) const_cast<void*>(reference);
}

/// A new string of these units; the caller releases it.
NSString* newString(const std::vector<UniChar>& units);

/// A new string of a text in UTF-8, nil when it is not valid; the caller releases it.
NSString* newString(std::string_view utf8);

/// The string's UTF-16 units.
std::vector<UniChar> unitsOf(NSString* string);

/// The string in UTF-8; empty for nil and when it holds half a surrogate pair.
std::string utf8Of(NSString* string);

}  // namespace portability
