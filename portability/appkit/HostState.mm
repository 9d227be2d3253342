#include "appkit/HostState.h"

#include <unistd.h>

#include <clocale>
#include <vector>

#include "foundation/TextEncoding.h"

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

id answerNil(id, SEL) { return nil; }

IMP replace(Method method, id (*replacement)(id, SEL)) {
    return method != nullptr ? method_setImplementation(method, reinterpret_cast<IMP>(replacement)) : nullptr;
}

void restore(Method method, IMP implementation) {
    if (method != nullptr) method_setImplementation(method, implementation);
}

}  // namespace

HostAlone::HostAlone()
    : notifications_(class_getClassMethod([NSDistributedNotificationCenter class], @selector(defaultCenter))),
      services_(class_getInstanceMethod(NSClassFromString(@"GSServicesManager"),
                                        sel_registerName("registerAsServiceProvider"))),
      oldNotifications_(replace(notifications_, answerNil)),
      oldServices_(replace(services_, answerNil)) {}

HostAlone::~HostAlone() {
    restore(services_, oldServices_);
    restore(notifications_, oldNotifications_);
}

}  // namespace portability
