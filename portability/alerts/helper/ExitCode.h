// The exit codes of the alert helper. The host does not use them; it reads only the stream.
#pragma once

namespace alerthelper {

enum ExitCode {
    kFinished = 0,    ///< a button was pressed, or the host has exited
    kNotShown = 1,    ///< no window system, or it was lost (then the window classes end the process)
    kWrongUse = 2,    ///< started without a host, or with arguments
    kBadMessage = 3,  ///< the host did not send a request in time, or sent something else
};

}  // namespace alerthelper
