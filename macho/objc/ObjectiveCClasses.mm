#include "macho/objc/ObjectiveCClasses.h"

#include <objc/runtime.h>

#include "macho/objc/PointerSection.h"

namespace dovrel::macho {

namespace {

// The compiler's description of a class in a 64-bit image.
struct MethodList {
    uint32_t entrySize;
    uint32_t count;
};
struct MethodEntry {
    const char* name;
    const char* types;
    IMP implementation;
};
struct VariableList {
    uint32_t entrySize;
    uint32_t count;
};
struct VariableEntry {
    int64_t* offset;
    const char* name;
    const char* type;
    uint32_t alignment;  // as a power of two
    uint32_t size;
};
struct ClassContent {
    uint32_t flags;
    uint32_t begin;
    uint32_t size;
    uint32_t unused;
    const uint8_t* layout;
    const char* name;
    const MethodList* methods;
    const void* protocols;
    const VariableList* variables;
    const uint8_t* weakLayout;
    const void* properties;
};
struct ClassDescription {
    const ClassDescription* metaclass;
    const void* superclass;
    const void* cache;
    const void* methodTable;
    const ClassContent* content;
};

constexpr uint32_t kSizeMask = ~uint32_t{3};  // the lowest bits are flags

template <typename Entry, typename List>
const Entry& getEntry(const List& list, uint32_t index) {
    const auto* const first = reinterpret_cast<const uint8_t*>(&list + 1);
    return *reinterpret_cast<const Entry*>(first + index * (list.entrySize & kSizeMask));
}

void addMethods(Class target, const MethodList* methods) {
    for (uint32_t i = 0; methods != nullptr && i < methods->count; ++i) {
        const MethodEntry& method = getEntry<MethodEntry>(*methods, i);
        class_addMethod(target, sel_registerName(method.name), method.implementation, method.types);
    }
}

void addVariables(Class target, const VariableList* variables) {
    for (uint32_t i = 0; variables != nullptr && i < variables->count; ++i) {
        const VariableEntry& variable = getEntry<VariableEntry>(*variables, i);
        class_addIvar(target, variable.name, variable.size, static_cast<uint8_t>(variable.alignment),
                      variable.type);
    }
}

// Writes the offsets of the instance variables into the image. Its code reads them there, because a
// superclass may have become larger.
void tellOffsets(Class target, const VariableList* variables) {
    for (uint32_t i = 0; variables != nullptr && i < variables->count; ++i) {
        const VariableEntry& variable = getEntry<VariableEntry>(*variables, i);
        *variable.offset = ivar_getOffset(class_getInstanceVariable(target, variable.name));
    }
}

Class registerClass(const ClassDescription& description, Class superclass) {
    const ClassContent& content = *description.content;
    const Class made = objc_allocateClassPair(superclass, content.name, 0);
    if (made == Nil) throw FormatError(std::string("the process has a class ") + content.name + " already");
    addVariables(made, content.variables);
    addMethods(made, content.methods);
    objc_registerClassPair(made);
    addMethods(object_getClass((id)made), description.metaclass->content->methods);
    tellOffsets(made, content.variables);
    return made;
}

}  // namespace

ClassMap registerClasses(const MachOFile& file, MappedImage& image) {
    ClassMap classes;
    const std::vector<uint64_t> places = pointerPlaces(file, "__objc_classlist");
    // A superclass can come after its subclass in the list. A class without its superclass waits for the
    // next round.
    for (size_t before = 0, round = 0; round == 0 || classes.size() > before; ++round) {
        before = classes.size();
        for (const uint64_t place : places) {
            const uintptr_t address = image.word(place);
            if (classes.count(address) != 0) continue;
            const auto& description = *reinterpret_cast<const ClassDescription*>(address);
            Class superclass = (Class) const_cast<void*>(description.superclass);
            if (image.contains(description.superclass)) {
                const auto own = classes.find(reinterpret_cast<uintptr_t>(description.superclass));
                if (own == classes.end()) continue;
                superclass = own->second;
            }
            classes[address] = registerClass(description, superclass);
        }
    }
    if (classes.size() != places.size()) throw FormatError("a class has no superclass");
    return classes;
}

}  // namespace dovrel::macho
