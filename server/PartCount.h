// Counts the parts of a structured block without reading their data.
#pragma once

#include <cstdint>

#include "serialization/CPPByteArray.h"

namespace merrowd {

/// The largest number of parts of a request, unknown ones included. No command has more than ten fields.
constexpr uint32_t kMostRequestParts = 64;

/// The largest number of classes that an application can register.
constexpr uint32_t kMostClasses = 65536;

/// Returns whether the block has more parts than `most`. Reads only the headers of the first parts and
/// allocates nothing, so it can be called with bytes from any client. It does not check the header of the
/// block, and returns false if the bytes end inside one of these parts; the reader rejects both.
bool hasMorePartsThan(uint32_t most, const dovrel::CPPByteArray& block);

}  // namespace merrowd
