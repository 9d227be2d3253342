#include "tests/support/WindowManager.h"

#include <stdexcept>

#include "tests/support/WaitUntil.h"

namespace dovrel::test {

// HOME is a temporary folder, because the window manager writes to its user's home folder.
WindowManager::WindowManager()
    : process_({"env", "HOME=" + home_.path(), "openbox", "--sm-disable"}, "/dev/null") {
    // The window manager is ready when it carries out a request. Windows that
    // open earlier may get a wrong size.
    if (!waitUntil([] {
            readOutput({"xdotool", "set_num_desktops", "1"});
            return readOutput({"xdotool", "get_num_desktops"}) == "1\n";
        })) {
        throw std::runtime_error("openbox does not start");
    }
}

}  // namespace dovrel::test
