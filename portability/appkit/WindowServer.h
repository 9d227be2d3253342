// The X server and the connections to it. Its library is opened at run time, so that a process without
// windows never has it in memory. Private to the layer.
#pragma once

namespace portability {

/// Xlib, in memory for as long as the object lives.
class WindowLibrary {
  public:
    WindowLibrary();
    WindowLibrary(const WindowLibrary&) = delete;
    WindowLibrary& operator=(const WindowLibrary&) = delete;
    ~WindowLibrary();

    /// Null when there is no such function, or no library.
    template <typename Function>
    Function* function(const char* name) const {
        return reinterpret_cast<Function*>(find(name));
    }

  private:
    void* find(const char* name) const;

    void* handle_;
};

/// A connection of our own, beside that of the window classes; open for as long as the object lives, because
/// some servers start anew when their last client leaves.
class WindowServer {
  public:
    /// Asks the server that the environment names.
    WindowServer();
    WindowServer(const WindowServer&) = delete;
    WindowServer& operator=(const WindowServer&) = delete;
    ~WindowServer();

    bool answers() const { return display_ != nullptr; }

  private:
    WindowLibrary library_;
    void* display_ = nullptr;
};

/// Whether the other side of a connection (an Xlib display) is still there. Reads nothing from it.
bool isConnected(void* display);

/// Has `handler` called when the other side of `display` turns out to be gone, where the library would end
/// the process. The handler must not return. For all other displays of the process everything stays as it is.
/// To be called again before each use of the display, because the process may change at any time what the
/// library does.
void setLossHandler(void* display, void (*handler)());

/// Has the window manager ask before it closes `window` (of Xlib) of `display`, where it would end the
/// connection.
void takeCloseRequests(void* display, unsigned long window);

}  // namespace portability
