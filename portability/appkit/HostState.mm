#include "appkit/HostState.h"

#include <dlfcn.h>
#include <objc/runtime.h>
#include <unistd.h>

#include <clocale>
#include <vector>

#include "corefoundation/TextEncoding.h"

namespace portability {

HostSignals::HostSignals() {
    for (int number = 1; number < NSIG; ++number)
        isSaved_[number] = sigaction(number, nullptr, &saved_[number]) == 0;
}

HostSignals::~HostSignals() {
    for (int number = 1; number < NSIG; ++number) {
        struct sigaction current = {};
        if (!isSaved_[number] || sigaction(number, nullptr, &current) != 0) continue;
        const bool isSame =
            current.sa_handler == saved_[number].sa_handler && current.sa_flags == saved_[number].sa_flags;
        if (!isSame) sigaction(number, &saved_[number], nullptr);
    }
}

HostLocale::HostLocale() : saved_(std::setlocale(LC_ALL, nullptr)) {}

HostLocale::~HostLocale() { std::setlocale(LC_ALL, saved_.c_str()); }

namespace {

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts) pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

void setTexts(NSArray* arguments, char** environment) {
    const NSStringEncoding encoding = [NSString defaultCStringEncoding];
    std::vector<std::string> texts;
    for (NSUInteger index = 0; index < [arguments count]; ++index) {
        const char* text = [[arguments objectAtIndex:index] cStringUsingEncoding:encoding];
        texts.emplace_back(text != nullptr ? text : "");
    }
    [NSProcessInfo initializeWithArguments:pointersTo(texts).data()
                                     count:static_cast<int>(texts.size())
                               environment:environment];
}

}  // namespace

HostTexts::HostTexts() : arguments_([[[NSProcessInfo processInfo] arguments] copy]) {
    std::vector<char*> environment;
    for (char** entry = environ; *entry != nullptr; ++entry)
        if (decodeText(*entry, kCFStringEncodingUTF8)) environment.push_back(*entry);
    environment.push_back(nullptr);
    NSArray* program = [arguments_ subarrayWithRange:NSMakeRange(0, [arguments_ count] > 0 ? 1 : 0)];
    setTexts(program, environment.data());
}

HostTexts::~HostTexts() {
    setTexts(arguments_, environ);
    [arguments_ release];
}

namespace {

using Answer = id (*)(id receiver, SEL selector);

Answer centerOfNotifications = nullptr;

/// Where the program or library begins that the address is in; null when it is in none.
const void* imageOf(const void* address) {
    Dl_info image = {};
    return address != nullptr && dladdr(address, &image) != 0 ? image.dli_fbase : nullptr;
}

/// The window classes are in two libraries, of which the second comes into the process with the application.
bool isOfWindowClasses(const void* address) {
    const void* const image = imageOf(address);
    return image != nullptr && (image == imageOf(NSClassFromString(@"NSApplication")) ||
                                image == imageOf(NSClassFromString(@"GSBackend")));
}

// The window classes ask again whenever the screen changes, long after the application has started.
id centerUnlessForWindowClasses(id receiver, SEL selector) {
    if (isOfWindowClasses(__builtin_return_address(0))) return nil;
    return centerOfNotifications(receiver, selector);
}

id answerNil(id, SEL) { return nil; }

Answer implementationOf(Method method) { return reinterpret_cast<Answer>(method_getImplementation(method)); }

void replace(Method method, Answer replacement) {
    if (method != nullptr) method_setImplementation(method, reinterpret_cast<IMP>(replacement));
}

}  // namespace

void keepWindowClassesAlone() {
    const Method center =
        class_getClassMethod([NSDistributedNotificationCenter class], @selector(defaultCenter));
    // Before it is replaced, because other threads may ask at any time.
    centerOfNotifications = implementationOf(center);
    replace(center, centerUnlessForWindowClasses);
    replace(class_getInstanceMethod(NSClassFromString(@"GSServicesManager"),
                                    sel_registerName("registerAsServiceProvider")),
            answerNil);
}

}  // namespace portability
