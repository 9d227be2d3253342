#include "foundation/FoundationObject.h"

#include "foundation/TextEncoding.h"

namespace portability {

NSString* newString(const std::vector<UniChar>& units) {
    return [[NSString alloc] initWithCharacters:units.data() length:units.size()];
}

NSString* newString(std::string_view utf8) {
    const auto units = decodeText(utf8, kCFStringEncodingUTF8);
    return units ? newString(*units) : nil;
}

std::vector<UniChar> unitsOf(NSString* string) {
    std::vector<UniChar> units([string length]);
    [string getCharacters:units.data() range:NSMakeRange(0, units.size())];
    return units;
}

std::string utf8Of(NSString* string) {
    const std::vector<UniChar> units = unitsOf(string);
    return encodeText(units.data(), units.size(), kCFStringEncodingUTF8).value_or(std::string());
}

}  // namespace portability
