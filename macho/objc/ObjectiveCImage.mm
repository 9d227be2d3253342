#include "macho/objc/ObjectiveCImage.h"

#include <objc/runtime.h>

#include "macho/objc/ConstantStrings.h"
#include "macho/objc/LegacyClasses.h"
#include "macho/objc/ObjectiveCClasses.h"
#include "macho/objc/PointerSection.h"

namespace dovrel::macho {

namespace {

// Replaces names by selectors. 32-bit images have the names in the second section.
void registerSelectors(const MachOFile& file, MappedImage& image) {
    for (const char* section : {"__objc_selrefs", "__message_refs"}) {
        for (const uint64_t place : pointerPlaces(file, section)) {
            const char* const name = reinterpret_cast<const char*>(image.word(place));
            image.setWord(place, reinterpret_cast<uintptr_t>(sel_registerName(name)));
        }
    }
}

void referToClasses(const MachOFile& file, MappedImage& image, const ClassMap& classes) {
    for (const char* section : {"__objc_classrefs", "__objc_superrefs"}) {
        for (const uint64_t place : pointerPlaces(file, section)) {
            const auto own = classes.find(image.word(place));
            if (own != classes.end()) image.setWord(place, reinterpret_cast<uintptr_t>(own->second));
        }
    }
}

}  // namespace

void prepareObjectiveC(const MachOFile& file, MappedImage& image) {
    registerSelectors(file, image);
    if (file.wordSize() == sizeof(uint64_t)) {
        referToClasses(file, image, registerClasses(file, image));
    } else {
        registerLegacyClasses(file, image);
        referToLegacyClasses(file, image);
    }
    convertConstantStrings(file, image);
}

}  // namespace dovrel::macho
