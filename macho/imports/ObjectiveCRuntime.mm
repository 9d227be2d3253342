// The imports from libobjc, and the classes that the runtime knows.
#include <objc/runtime.h>

#include "macho/imports/ReviewedLibraries.h"
#include "macho/objc/MessageSend.h"
#include "macho/objc/PlatformClasses.h"

extern "C" {
void* objc_autoreleasePoolPush(void);
void objc_autoreleasePoolPop(void* pool);
}

namespace dovrel::macho {

namespace {

constexpr char kLibrary[] = "/usr/lib/libobjc.A.dylib";
constexpr char kCoreFoundation[] =
    "/System/Library/Frameworks/CoreFoundation.framework/Versions/A/CoreFoundation";
constexpr char kAppKit[] = "/System/Library/Frameworks/AppKit.framework/Versions/C/AppKit";
constexpr char kFoundation[] = "/System/Library/Frameworks/Foundation.framework/Versions/C/Foundation";

// The classes with their names on macOS and the libraries that contain them there.
constexpr std::pair<const char*, const char*> kClasses[] = {
    {kAppKit, "NSAlert"},          {kCoreFoundation, "NSMutableArray"},
    {kCoreFoundation, "NSObject"}, {kFoundation, "NSAutoreleasePool"},
    {kFoundation, "NSPipe"},       {kFoundation, "NSString"},
    {kFoundation, "NSTask"}};

}  // namespace

void addObjectiveCRuntime(ImportTable& table) {
    table.add(kLibrary, "_objc_msgSend", &macho_objc_msgSend);
    table.add(kLibrary, "_objc_autoreleasePoolPush", &objc_autoreleasePoolPush);
    table.add(kLibrary, "_objc_autoreleasePoolPop", &objc_autoreleasePoolPop);
    for (const auto& [library, name] : kClasses) {
        const Class theClass = platformClass(name);
        table.add(library, std::string("_OBJC_CLASS_$_") + name, (void*)theClass);
        table.add(library, std::string("_OBJC_METACLASS_$_") + name, (void*)object_getClass((id)theClass));
    }
}

}  // namespace dovrel::macho
