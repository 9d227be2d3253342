#include "portability/files/FileNames.h"

#include <CoreServices/MacErrors.h>

#include <algorithm>
#include <iterator>

#include "portability/corefoundation/TextEncoding.h"

namespace portability {

OSErr fileName(UniCharCount length, const UniChar* name, std::string& result) {
    if (length == 0) {
        return errFSMissingName;
    }
    if (name == nullptr) {
        return paramErr;
    }
    if (length > std::size(HFSUniStr255().unicode)) {
        return errFSNameTooLong;
    }
    const auto bytes = encodeText(name, length, kCFStringEncodingUTF8);
    const bool isLegal = bytes && *bytes != "." && *bytes != ".." && bytes->find(':') == std::string::npos &&
                         bytes->find('\0') == std::string::npos;
    if (!isLegal) {
        return bdNamErr;
    }
    result = *bytes;
    std::replace(result.begin(), result.end(), '/', ':');
    return noErr;
}

void unicodeName(const std::string& name, HFSUniStr255& result) {
    std::string bytes = name;
    std::replace(bytes.begin(), bytes.end(), ':', '/');
    auto units = decodeText(bytes, kCFStringEncodingUTF8);
    if (!units) {
        units = decodeText(bytes, kCFStringEncodingISOLatin1);
    }
    const std::size_t length = std::min(units->size(), std::size(result.unicode));
    result.length = static_cast<UInt16>(length);
    std::copy_n(units->begin(), length, result.unicode);
}

}  // namespace portability
