// std::ctype<char> of an image: code of the image reads its table, which has other bits on macOS.
#pragma once

namespace dovrel::macho {

/// std::use_facet. For ctype<char> an object with the table of macOS, of the "C" locale; for all others what
/// this system's library answers.
const void* platformFacet(const void* locale, const void* id);

}  // namespace dovrel::macho
