// How the alert helper ends. The host needs none of it: it looks at the stream only.
#pragma once

namespace alerthelper {

enum ExitCode {
    kFinished = 0,  ///< a button was pressed, or the host has gone
    kNotShown =
        1,  ///< there is no window system, or it was lost; the window classes end the process with this code
    kWrongUse = 2,    ///< started without a host, or with arguments
    kBadMessage = 3,  ///< the host sent nothing in time, or something that is not a request
};

}  // namespace alerthelper
