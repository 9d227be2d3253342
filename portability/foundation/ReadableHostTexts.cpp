#include "portability/foundation/ReadableHostTexts.h"

#include <CoreFoundation/CFString.h>
#include <objc/message.h>
#include <objc/runtime.h>

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>

#include "portability/corefoundation/TextEncoding.h"
#include "portability/foundation/FoundationUse.h"
#include "portability/foundation/ImportedFunction.h"

namespace portability {

namespace {

constexpr char kEncodingVariable[] = "GNUSTEP_STRING_ENCODING";

bool isUtf8(const char* file) {
    std::ifstream stream(file, std::ios::binary);
    const std::string bytes(std::istreambuf_iterator<char>(stream), {});
    return decodeText(bytes, kCFStringEncodingUTF8).has_value();
}

// Sends a message through the runtime's functions, because the compiler's selectors are not registered yet
// while the library is being loaded.
id send(id receiver, const char* name) {
    const SEL selector = sel_registerName(name);
    return reinterpret_cast<id (*)(id, SEL)>(objc_msg_lookup(receiver, selector))(receiver, selector);
}

id classNamed(const char* name) {
    return reinterpret_cast<id>(objc_getClass(name));
}

// Replaces GNUstep's getenv. The environment itself is not changed, because other threads may be reading it.
char* variableWithEncoding(const char* name) {
    static char anyBytes[] = "NSISOLatin1StringEncoding";
    return std::strcmp(name, kEncodingVariable) == 0 ? anyBytes : std::getenv(name);
}

bool readAsLatin1() {
    if (std::getenv(kEncodingVariable) != nullptr) return false;
    if (isUtf8("/proc/self/cmdline") && isUtf8("/proc/self/environ")) return false;
    // GNUstep reads the variable only once, when it first needs a text. The messages below
    // make that happen now.
    ImportedFunction environment(objc_getClass("NSObject"), "getenv");
    environment.redirect(reinterpret_cast<void*>(&variableWithEncoding));
    beginFoundationUse();
    const id pool = send(classNamed("NSAutoreleasePool"), "new");
    send(classNamed("NSProcessInfo"), "processInfo");
    send(pool, "release");
    endFoundationUse();
    environment.restore();
    return true;
}

[[gnu::constructor]] void onLoad() {
    makeHostTextsReadable();
}

}  // namespace

void makeHostTextsReadable() {
    static const bool done = readAsLatin1();
    static_cast<void>(done);
}

}  // namespace portability
