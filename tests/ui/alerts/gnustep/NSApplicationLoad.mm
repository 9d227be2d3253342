// The one call that GNUstep's window classes lack.
#import <AppKit/AppKit.h>
#include <objc/runtime.h>

namespace {

id answerNil(id, SEL) { return nil; }

void replaceByNil(Method method) { method_setImplementation(method, reinterpret_cast<IMP>(answerNil)); }

// They would start programs that stay when the test has ended, for notifications and for services.
void startNoOtherProgram() {
    replaceByNil(class_getClassMethod([NSDistributedNotificationCenter class], @selector(defaultCenter)));
    replaceByNil(class_getInstanceMethod(NSClassFromString(@"GSServicesManager"),
                                         sel_registerName("registerAsServiceProvider")));
}

// They would open the program's arguments as documents.
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
    // Without it no key reaches a panel.
    [application finishLaunching];
    isLoaded = application != nil;
    return isLoaded;
}
