#include "tests/macho/imports/CharacterTypes.h"

#include <array>
#include <cstdint>
#include <cstring>

#include "tests/macho/imports/StandardLibrary.h"

namespace dovrel::macho {

namespace {

enum PlatformClass : uint32_t {
    kAlphabetic = 0x100,
    kControl = 0x200,
    kDigit = 0x400,
    kGraphic = 0x800,
    kLower = 0x1000,
    kPunctuation = 0x2000,
    kSpace = 0x4000,
    kUpper = 0x8000,
    kHexadecimal = 0x10000,
    kBlank = 0x20000,
    kPrintable = 0x40000
};

uint32_t classesOf(char character) {
    const auto isIn = [character](char first, char last) { return character >= first && character <= last; };
    const bool isUpper = isIn('A', 'Z');
    const bool isLower = isIn('a', 'z');
    const bool isDigit = isIn('0', '9');
    const bool isGraphic = isIn('!', '~');
    uint32_t classes = 0;
    const auto set = [&classes](bool isOne, uint32_t flags) { classes |= isOne ? flags : 0; };
    set(isUpper, kUpper | kAlphabetic);
    set(isLower, kLower | kAlphabetic);
    set(isDigit, kDigit | kHexadecimal);
    set(isIn('a', 'f') || isIn('A', 'F'), kHexadecimal);
    set(isGraphic, kGraphic | kPrintable);
    set(isGraphic && !isUpper && !isLower && !isDigit, kPunctuation);
    set(character == ' ', kPrintable);
    set(character == ' ' || character == '\t', kBlank);
    set(character == ' ' || isIn('\t', '\r'), kSpace);
    set(isIn('\0', '\x1F') || character == '\x7F', kControl);
    return classes;
}

// Bytes above 127 are in no class in this locale.
const uint32_t* platformTable() {
    static const auto table = [] {
        std::array<uint32_t, 256> classes{};
        for (char character = 0; character < 0x7F; ++character)
            classes[static_cast<size_t>(character)] = classesOf(character);
        classes[0x7F] = classesOf('\x7F');
        return classes;
    }();
    return table.data();
}

// A facet of the library: the object behind its virtual functions.
struct CharacterFacet {
    const void* functions;
    long owners;
    const void* table;
    bool ownsTable;
};

}  // namespace

const void* platformFacet(const void* locale, const void* id) {
    using UseFacet = const void* (*)(const void*, const void*);
    static const auto useFacet =
        reinterpret_cast<UseFacet>(standardLibrarySymbol("_ZNKSt3__16locale9use_facetERNS0_2idE"));
    static const void* const characterId = standardLibrarySymbol("_ZNSt3__15ctypeIcE2idE");
    const void* const facet = useFacet(locale, id);
    if (id != characterId) return facet;

    static const CharacterFacet platformFacet = [facet] {
        CharacterFacet copy;
        std::memcpy(&copy, facet, sizeof copy);
        copy.table = platformTable();
        return copy;
    }();
    return &platformFacet;
}

}  // namespace dovrel::macho
