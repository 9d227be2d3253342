#include "tests/support/WindowManager.h"

#include <stdexcept>

#include "tests/support/WaitUntil.h"

namespace dovrel::test {

// The window manager writes into its user's home.
WindowManager::WindowManager()
    : process_({"env", "HOME=" + home_.path(), "openbox", "--sm-disable"}, "/dev/null") {
    // Once it does what it is told, it is ready for windows; those that come before may get wrong measures.
    if (!waitUntil([] {
            outputOf({"xdotool", "set_num_desktops", "1"});
            return outputOf({"xdotool", "get_num_desktops"}) == "1\n";
        })) {
        throw std::runtime_error("openbox does not start");
    }
}

}  // namespace dovrel::test
