#include "appkit/AlertClosing.h"

#import <AppKit/AppKit.h>
#include <objc/runtime.h>

#include <cstdint>

#include "appkit/WindowServer.h"

namespace portability {

namespace {

using OrderWindow = void (*)(id window, SEL selector, NSWindowOrderingMode place, NSInteger other);
using DisplayServer = GSDisplayServer* (*)();

OrderWindow orderWindow = nullptr;
DisplayServer currentServer = nullptr;

/// The button with that name inside of the alert; nil when the alert does not show it.
NSButton* shownButton(id alert, const char* name) {
    const Ivar variable = class_getInstanceVariable([alert class], name);
    id const button = variable != nullptr ? object_getIvar(alert, variable) : nil;
    return [button superview] != nil ? button : nil;
}

void pressLastButton(id alert, SEL, id) {
    NSButton* const second = shownButton(alert, "altButton");
    [second != nil ? second : shownButton(alert, "defButton") performClick:nil];
}

/// Its window at the window server exists once it has been ordered.
void orderClosableWindow(id alert, SEL selector, NSWindowOrderingMode place, NSInteger other) {
    orderWindow(alert, selector, place, other);
    if (place == NSWindowOut) return;
    GSDisplayServer* const server = currentServer();
    void* const window = [server windowDevice:static_cast<int>([alert windowNumber])];
    takeCloseRequests([server serverDevice], reinterpret_cast<uintptr_t>(window));
}

template <typename Function>
void override(Class alert, SEL selector, Function* implementation) {
    const Method inherited = class_getInstanceMethod(alert, selector);
    class_addMethod(alert, selector, reinterpret_cast<IMP>(reinterpret_cast<void (*)()>(implementation)),
                    method_getTypeEncoding(inherited));
}

}  // namespace

void letAlertsBeClosed(DisplayServer server) {
    const Class alert = NSClassFromString(@"GSAlertPanel");
    if (alert == Nil || server == nullptr) return;
    currentServer = server;
    orderWindow = reinterpret_cast<OrderWindow>(reinterpret_cast<void (*)()>(
        class_getMethodImplementation(alert, @selector(orderWindow:relativeTo:))));
    override(alert, @selector(orderWindow:relativeTo:), orderClosableWindow);
    override(alert, @selector(performClose:), pressLastButton);
}

}  // namespace portability
