#include "portability/alerts/helper/OnTop.h"

#include <X11/Xatom.h>
#include <gdk/x11/gdkx.h>

namespace alerthelper {
namespace {

// The X11 properties of a window. `display` is null if it is not an X11 window.
struct X11Window {
    GdkSurface* surface = nullptr;
    GdkDisplay* gdkDisplay = nullptr;
    Display* display = nullptr;
    Window id = None;

    Atom atom(const char* name) const { return gdk_x11_get_xatom_by_name_for_display(gdkDisplay, name); }
};

X11Window getX11Window(GtkWindow* window) {
    X11Window found;
    found.surface = gtk_native_get_surface(GTK_NATIVE(window));
    if (found.surface == nullptr || !GDK_IS_X11_SURFACE(found.surface)) return {};
    found.gdkDisplay = gdk_surface_get_display(found.surface);
    found.display = gdk_x11_display_get_xdisplay(found.gdkDisplay);
    found.id = gdk_x11_surface_get_xid(found.surface);
    return found;
}

bool hasWindowManager(const X11Window& own) {
    GdkX11Screen* const screen = gdk_x11_display_get_screen(own.gdkDisplay);
    return gdk_x11_screen_supports_net_wm_hint(screen, "_NET_WM_STATE") != FALSE;
}

void askToKeepAbove(const X11Window& own) {
    constexpr long kAdd = 1;
    constexpr long kFromApplication = 1;
    XEvent message = {};
    message.xclient.type = ClientMessage;
    message.xclient.window = own.id;
    message.xclient.message_type = own.atom("_NET_WM_STATE");
    message.xclient.format = 32;
    message.xclient.data.l[0] = kAdd;
    message.xclient.data.l[1] = static_cast<long>(own.atom("_NET_WM_STATE_ABOVE"));
    message.xclient.data.l[3] = kFromApplication;
    XSendEvent(own.display, gdk_x11_display_get_xrootwindow(own.gdkDisplay), False,
               SubstructureNotifyMask | SubstructureRedirectMask, &message);
}

// Moves the window to the middle of the screen. The window may have been closed meanwhile; without the error
// trap, the X11 error would end the process.
void placeInTheMiddle(const X11Window& own) {
    const Window root = gdk_x11_display_get_xrootwindow(own.gdkDisplay);
    XWindowAttributes screen = {};
    XWindowAttributes window = {};
    gdk_x11_display_error_trap_push(own.gdkDisplay);
    if (XGetWindowAttributes(own.display, root, &screen) != 0 &&
        XGetWindowAttributes(own.display, own.id, &window) != 0) {
        XMoveWindow(own.display, own.id, (screen.width - window.width) / 2,
                    (screen.height - window.height) / 2);
        XSetInputFocus(own.display, own.id, RevertToPointerRoot, CurrentTime);
    }
    gdk_x11_display_error_trap_pop_ignored(own.gdkDisplay);
}

}  // namespace

void prepareOnTop(GtkWindow* window) {
    const X11Window own = getX11Window(window);
    if (own.display == nullptr) return;
    // Format 32 means an array of long, even if long has 64 bits.
    const Atom dialog = own.atom("_NET_WM_WINDOW_TYPE_DIALOG");
    XChangeProperty(own.display, own.id, own.atom("_NET_WM_WINDOW_TYPE"), XA_ATOM, 32, PropModeReplace,
                    reinterpret_cast<const unsigned char*>(&dialog), 1);
    // Window managers deny the keyboard focus to a window that is older than the user's last action.
    gdk_x11_surface_set_user_time(own.surface, gdk_x11_get_server_time(own.surface));
}

void putOnTop(GtkWindow* window) {
    const X11Window own = getX11Window(window);
    if (own.display == nullptr) return;
    if (hasWindowManager(own)) {
        askToKeepAbove(own);
    } else {
        placeInTheMiddle(own);
    }
}

}  // namespace alerthelper
