// What becomes of an alert when the user closes its window. Private to the layer; Objective-C++ only.
#pragma once

#import <GNUstepGUI/GSDisplayServer.h>

namespace portability {

/// Has alerts take the close button of the window manager as a press on the last button, from now on. They
/// say nothing about it by themselves, and a window manager ends the connection of a window that does not. To
/// be called once, when the window classes are in the process; `currentServer` is their function of that
/// name.
void letAlertsBeClosed(GSDisplayServer* (*currentServer)());

}  // namespace portability
