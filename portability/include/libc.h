// The system's own calls, as far as other systems lack them.
#pragma once

#include <unistd.h>

#if defined(__cplusplus)
extern "C" {
#endif

/// 1 when the program runs with another user's or group's rights, or got them when it was started (set-id);
/// else 0. Its environment then comes from somebody who does not have these rights. Any thread.
int issetugid(void);

#if defined(__cplusplus)
}
#endif
