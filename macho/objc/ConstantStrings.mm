#include "macho/objc/ConstantStrings.h"

#import <Foundation/Foundation.h>

namespace dovrel::macho {

namespace {

// The layout that the compiler writes for macOS.
struct SystemString {
    uintptr_t theClass;
    uintptr_t flags;
    uintptr_t text;
    uintptr_t length;
};

// The layout of this system's runtime. The text is UTF-8.
struct RuntimeString {
    uintptr_t theClass;
    uintptr_t text;
    unsigned length;
    unsigned unused;
};

static_assert(sizeof(RuntimeString) <= sizeof(SystemString), "a string is converted where it stands");

constexpr uintptr_t kTextIsUtf16 = 0x10;

// Returns a UTF-8 copy of the text, which is never freed, like the image. Sets `length` to the number
// of bytes.
const char* utf8Text(const SystemString& string, uintptr_t& length) {
    NSString* const text = [NSString stringWithCharacters:reinterpret_cast<const unichar*>(string.text)
                                                   length:string.length];
    const char* const bytes = strdup([text UTF8String]);
    length = strlen(bytes);
    return bytes;
}

}  // namespace

void convertConstantStrings(const MachOFile& file, MappedImage& image) {
    NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
    const uintptr_t theClass = reinterpret_cast<uintptr_t>([NSConstantString class]);
    for (const Section& section : file.sections()) {
        if (section.name != "__cfstring") continue;
        for (uint64_t at = 0; at + sizeof(SystemString) <= section.size; at += sizeof(SystemString)) {
            uint8_t* const place = image.at(section.address + at, sizeof(SystemString));
            SystemString old;
            std::memcpy(&old, place, sizeof old);
            RuntimeString converted = {theClass, old.text, static_cast<unsigned>(old.length), 0};
            if ((old.flags & kTextIsUtf16) != 0) {
                converted.text = reinterpret_cast<uintptr_t>(utf8Text(old, old.length));
                converted.length = static_cast<unsigned>(old.length);
            }
            std::memset(place, 0, sizeof old);
            std::memcpy(place, &converted, sizeof converted);
        }
    }
    [pool release];
}

}  // namespace dovrel::macho
