// Imports from libobjc, and the classes that the runtime knows.
#import <Foundation/Foundation.h>
#include <objc/runtime.h>

#include "tests/macho/imports/ReviewedLibraries.h"
#include "tests/macho/imports/StandardLibrary.h"
#include "tests/macho/objc/MessageSend.h"
#include "tests/macho/objc/ObjectiveCExceptions.h"

namespace dovrel::macho {

namespace {

constexpr char kLibrary[] = "/usr/lib/libobjc.A.dylib";
constexpr char kCoreFoundation[] =
    "/System/Library/Frameworks/CoreFoundation.framework/Versions/A/CoreFoundation";
constexpr char kFoundation[] = "/System/Library/Frameworks/Foundation.framework/Versions/C/Foundation";

// Classes that GNUstep has under the same name, and where they are at home on macOS.
constexpr std::pair<const char*, const char*> kClasses[] = {{kCoreFoundation, "NSMutableArray"},
                                                            {kCoreFoundation, "NSObject"},
                                                            {kFoundation, "NSAutoreleasePool"},
                                                            {kFoundation, "NSFileManager"},
                                                            {kFoundation, "NSPipe"},
                                                            {kFoundation, "NSString"},
                                                            {kFoundation, "NSTask"}};

}  // namespace

void addObjectiveCRuntime(ImportTable& table) {
    // Written where an image's classes are; this system's runtime keeps such things for itself.
    static char unused[64];
    table.add(kLibrary, "__objc_empty_cache", unused);
    table.add(kLibrary, "__objc_empty_vtable", unused);
    table.add(kLibrary, "_objc_msgSend", &macho_objc_msgSend);
    table.add(kLibrary, "_objc_msgSend_stret", &macho_objc_msgSend_stret);
    table.add(kLibrary, "_objc_begin_catch", &beginCatch);
    table.add(kLibrary, "_objc_end_catch", &endCatch);
    // For C++ the exceptions of another language go to handlers of everything, which are the only ones here.
    table.add(kLibrary, "___objc_personality_v0", standardLibrarySymbol("__gxx_personality_v0"));
    for (const auto& [library, name] : kClasses) {
        const Class theClass = (Class)objc_getClass(name);
        table.add(library, std::string("_OBJC_CLASS_$_") + name, (void*)theClass);
        table.add(library, std::string("_OBJC_METACLASS_$_") + name, (void*)object_getClass((id)theClass));
    }
}

}  // namespace dovrel::macho
