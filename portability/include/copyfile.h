// Copying files with all their attributes. On this system it only checks which attributes there are to copy.
#pragma once

#include <stdint.h>

#define COPYFILE_ACL (1 << 0)
#define COPYFILE_XATTR (1 << 2)
#define COPYFILE_CHECK (1 << 16)

typedef struct _copyfile_state* copyfile_state_t;
typedef uint32_t copyfile_flags_t;

#if defined(__cplusplus)
extern "C" {
#endif

/// With COPYFILE_CHECK in `flags`: copies nothing. Returns those of COPYFILE_ACL and COPYFILE_XATTR in
/// `flags` that the file `from` has; 0 if they cannot be read. `to` and `state` may be null. Follows symbolic
/// links. On systems other than macOS, all other calls return -1 with errno ENOTSUP, or EINVAL if both paths
/// are null.
int copyfile(const char* from, const char* to, copyfile_state_t state, copyfile_flags_t flags);

#if defined(__cplusplus)
}
#endif
