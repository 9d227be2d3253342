// Reader of property lists in their binary form. Private to the layer; for Objective-C++ only.
//
// Foundation reads this form too, but damaged lists can end the program there.
#pragma once

#import <Foundation/Foundation.h>

#include <string_view>

namespace portability {

/// Whether the document says of itself that it is binary.
bool isBinaryPropertyList(std::string_view document);

/// The value of the document; the caller releases it. What the document holds once is one object, however
/// often it is referred to. Nil when something in it is not what it should be, no part of a property list,
/// or nested beyond 128 levels.
id newObjectOfBinaryPropertyList(std::string_view document);

}  // namespace portability
