// The kernel's table of processes, with its BSD interface.
#pragma once

#include <stddef.h>
#include <stdint.h>
#include <sys/types.h>

enum { CTL_KERN = 1 };
enum { KERN_PROC = 14 };
enum {
    KERN_PROC_ALL = 0,
    KERN_PROC_PID = 1,
    KERN_PROC_PGRP = 2,
    KERN_PROC_SESSION = 3,
    KERN_PROC_TTY = 4,
    KERN_PROC_UID = 5,
    KERN_PROC_RUID = 6
};
enum { SIDL = 1, SRUN = 2, SSLEEP = 3, SSTOP = 4, SZOMB = 5 };
enum { MAXCOMLEN = 16 };

/// The scheduler's data of a process. Unused fields are arrays of bytes with the right size.
struct extern_proc {
#if defined(__LP64__)
    char p_reserved1[32];
#else
    char p_reserved1[16];
#endif
    int p_flag;
    char p_stat;
    pid_t p_pid;
    pid_t p_oppid;
#if defined(__LP64__)
    char p_reserved2[195];
#else
    char p_reserved2[131];
#endif
    char p_comm[MAXCOMLEN + 1];
#if defined(__LP64__)
    char p_reserved3[36];
#else
    char p_reserved3[16];
#endif
};

struct _ucred {
    int32_t cr_ref;
    uid_t cr_uid;
    short cr_ngroups;
    gid_t cr_groups[16];
};

/// The user's data of a process.
struct eproc {
#if defined(__LP64__)
    char e_reserved1[120];
#else
    char e_reserved1[104];
#endif
    struct _ucred e_ucred;
#if defined(__LP64__)
    char e_reserved2[68];
#else
    char e_reserved2[40];
#endif
    pid_t e_ppid;
    pid_t e_pgid;
#if defined(__LP64__)
    char e_reserved3[80];
#else
    char e_reserved3[68];
#endif
};

struct kinfo_proc {
    struct extern_proc kp_proc;
    struct eproc kp_eproc;
};

#if defined(__cplusplus)
extern "C" {
#endif

/// Reads the system variable `name`. If `oldp` is null, sets `oldlenp` to the number of bytes needed, plus
/// some spare bytes. Otherwise fills `oldp` and sets `oldlenp` to the number of bytes written. Returns -1 and
/// sets errno on failure. If the buffer is too small, errno is ENOMEM and `oldlenp` is set to 0.
///
/// {CTL_KERN, KERN_PROC, KERN_PROC_ALL}, with or without a fourth component, reads a kinfo_proc for each
/// running process of this user that belongs to the current system root. Thread-safe.
int sysctl(int* name, unsigned int namelen, void* oldp, size_t* oldlenp, void* newp, size_t newlen);

#if defined(__cplusplus)
}  // extern "C"

static_assert(sizeof(struct kinfo_proc) == (sizeof(void*) == 8 ? 648 : 492), "the kernel's record");
static_assert(alignof(struct extern_proc) == 4 && alignof(struct _ucred) == 4, "the kernel's record");
static_assert(alignof(struct eproc) == 4 && alignof(struct kinfo_proc) == 4, "the kernel's record");
static_assert(offsetof(struct extern_proc, p_stat) == (sizeof(void*) == 8 ? 36 : 20), "the kernel's record");
static_assert(offsetof(struct extern_proc, p_pid) == (sizeof(void*) == 8 ? 40 : 24), "the kernel's record");
static_assert(offsetof(struct extern_proc, p_comm) == (sizeof(void*) == 8 ? 243 : 163),
              "the kernel's record");
static_assert(offsetof(struct eproc, e_ucred) == (sizeof(void*) == 8 ? 120 : 104), "the kernel's record");
static_assert(offsetof(struct eproc, e_ppid) == (sizeof(void*) == 8 ? 264 : 220), "the kernel's record");
#endif
