// Copying files with all that belongs to them. Here is only the question what there would be to copy.
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

/// With COPYFILE_CHECK in `flags`: copies nothing. Returns those of COPYFILE_ACL and COPYFILE_XATTR in `flags` of
/// which the file `from` has something; 0 if it cannot be asked. `to` and `state` may be null. Follows symbolic
/// links. On systems other than macOS, every other call returns -1 with errno ENOTSUP; it returns -1 with errno
/// EINVAL if both paths are null.
int copyfile(const char* from, const char* to, copyfile_state_t state, copyfile_flags_t flags);

#if defined(__cplusplus)
}
#endif
