#include "macho/objc/LegacyClasses.h"

#import <Foundation/Foundation.h>
#include <objc/runtime.h>

#include <vector>

#include "macho/objc/PlatformClasses.h"
#include "macho/objc/PointerSection.h"

namespace dovrel::macho {

namespace {

// The compiler's description of a class in a 32-bit image.
struct MethodEntry {
    const char* name;
    const char* types;
    IMP implementation;
};
struct MethodList {
    const void* unused;
    int count;
    MethodEntry entries[1];
};
struct VariableEntry {
    const char* name;
    const char* type;
    int offset;
};
struct VariableList {
    int count;
    VariableEntry entries[1];
};
struct ClassDescription {
    const ClassDescription* metaclass;
    const char* superclass;
    const char* name;
    long version;
    long flags;
    long size;
    const VariableList* variables;
    const MethodList* methods;
    const void* cache;
    const void* protocols;
    const void* layout;
    const void* extension;
};

void addMethods(Class target, const MethodList* methods) {
    for (int i = 0; methods != nullptr && i < methods->count; ++i) {
        const MethodEntry& method = methods->entries[i];
        class_addMethod(target, sel_registerName(method.name), method.implementation, method.types);
    }
}

void addVariables(Class target, const VariableList* variables) {
    for (int i = 0; variables != nullptr && i < variables->count; ++i) {
        const VariableEntry& variable = variables->entries[i];
        NSUInteger size = 0;
        NSUInteger alignment = 0;
        NSGetSizeAndAlignment(variable.type, &size, &alignment);
        const auto power = static_cast<uint8_t>(__builtin_ctzl(alignment));
        class_addIvar(target, variable.name, size, power, variable.type);
    }
}

// Checks the offsets of the instance variables, because they are compiled into the image's code.
void checkOffsets(Class made, const VariableList* variables) {
    for (int i = 0; variables != nullptr && i < variables->count; ++i) {
        const VariableEntry& variable = variables->entries[i];
        if (ivar_getOffset(class_getInstanceVariable(made, variable.name)) != variable.offset)
            throw FormatError(std::string(class_getName(made)) + " has variables in other places here");
    }
}

Class knownClass(const char* name) {
    const Class known = platformClass(name);
    if (known == Nil) throw FormatError(std::string("there is no class ") + name);
    return known;
}

void registerClass(const ClassDescription& description, Class superclass) {
    const Class made = objc_allocateClassPair(superclass, description.name, 0);
    if (made == Nil)
        throw FormatError(std::string("the process has a class ") + description.name + " already");
    addVariables(made, description.variables);
    addMethods(made, description.methods);
    objc_registerClassPair(made);
    addMethods(object_getClass((id)made), description.metaclass->methods);
    checkOffsets(made, description.variables);
}

std::vector<const ClassDescription*> readClasses(const MachOFile& file, const MappedImage& image) {
    std::vector<const ClassDescription*> classes;
    for (const Section& section : file.sections()) {
        if (section.name != "__class") continue;
        for (uint64_t at = 0; at + sizeof(ClassDescription) <= section.size; at += sizeof(ClassDescription)) {
            const uint8_t* const place = image.at(section.address + at, sizeof(ClassDescription));
            classes.push_back(reinterpret_cast<const ClassDescription*>(place));
        }
    }
    return classes;
}

}  // namespace

void registerLegacyClasses(const MachOFile& file, const MappedImage& image) {
    // A superclass can come after its subclass in the section. A class without its superclass waits for the
    // next round.
    std::vector<const ClassDescription*> waiting = readClasses(file, image);
    while (!waiting.empty()) {
        std::vector<const ClassDescription*> stillWaiting;
        for (const ClassDescription* const description : waiting) {
            const Class superclass = (Class)objc_getClass(description->superclass);
            if (superclass == Nil) {
                stillWaiting.push_back(description);
            } else {
                registerClass(*description, superclass);
            }
        }
        if (stillWaiting.size() == waiting.size()) throw FormatError("a class has no superclass");
        waiting.swap(stillWaiting);
    }
}

void referToLegacyClasses(const MachOFile& file, MappedImage& image) {
    for (const uint64_t place : pointerPlaces(file, "__cls_refs")) {
        const char* const name = reinterpret_cast<const char*>(image.word(place));
        image.setWord(place, reinterpret_cast<uintptr_t>(knownClass(name)));
    }
}

}  // namespace dovrel::macho
