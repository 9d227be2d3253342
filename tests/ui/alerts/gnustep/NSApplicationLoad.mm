// The one function that GNUstep's window classes do not have.
#import <AppKit/AppKit.h>
#include <objc/runtime.h>

namespace {

id answerNil(id, SEL) { return nil; }

void replaceByNil(Method method) { method_setImplementation(method, reinterpret_cast<IMP>(answerNil)); }

// Prevents GNUstep from starting programs for notifications and services, which would outlive the test.
void startNoOtherProgram() {
    replaceByNil(class_getClassMethod([NSDistributedNotificationCenter class], @selector(defaultCenter)));
    replaceByNil(class_getInstanceMethod(NSClassFromString(@"GSServicesManager"),
                                         sel_registerName("registerAsServiceProvider")));
}

// Prevents GNUstep from opening the program's arguments as documents.
void forgetArguments() {
    NSProcessInfo* const process = [NSProcessInfo processInfo];
    const char* const program = [[[process arguments] objectAtIndex:0] UTF8String];
    char* arguments[] = {const_cast<char*>(program), nullptr};
    [NSProcessInfo initializeWithArguments:arguments count:1 environment:environ];
}

}  // namespace

BOOL NSApplicationLoad(void) {
    static BOOL isLoaded = NO;
    if (isLoaded) return YES;
    startNoOtherProgram();
    forgetArguments();
    [[NSUserDefaults standardUserDefaults]
        registerDefaults:[NSDictionary dictionaryWithObject:@"YES" forKey:@"GSSuppressAppIcon"]];
    NSApplication* const application = [NSApplication sharedApplication];
    // Without this call a panel receives no keys.
    [application finishLaunching];
    isLoaded = application != nil;
    return isLoaded;
}
