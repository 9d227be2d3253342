#include "portability/files/FileErrors.h"

#include <CoreServices/MacErrors.h>

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <optional>

namespace portability {
namespace {

struct Mapping {
    int systemError;
    OSErr result;
};
constexpr Mapping kMappings[] = {
    {0, noErr},
    {ENOENT, fnfErr},
    {ENOTDIR, dirNFErr},
    {EEXIST, dupFNErr},
    {ENOTEMPTY, fBsyErr},
    {EBUSY, fBsyErr},
    {EACCES, afpAccessDenied},
    {EPERM, afpAccessDenied},
    {EROFS, wPrErr},
    {ENOSPC, dskFulErr},
    {EDQUOT, errFSQuotaExceeded},
    {ENAMETOOLONG, errFSNameTooLong},
    {EBADF, rfNumErr},
    {EMFILE, tmfoErr},
    {ENFILE, tmfoErr},
    {EIO, ioErr},
    {EINVAL, paramErr},
    {EFAULT, paramErr},
    {ENOMEM, memFullErr},
    {EXDEV, diffVolErr},
};

std::optional<OSErr> mapped(int systemError) {
    const auto found =
        std::find_if(std::begin(kMappings), std::end(kMappings),
                     [systemError](const Mapping& entry) { return entry.systemError == systemError; });
    return found == std::end(kMappings) ? std::nullopt : std::optional<OSErr>(found->result);
}

}  // namespace

OSErr fileError(int systemError) {
    return mapped(systemError).value_or(ioErr);
}

OSStatus fileStatus(int systemError) {
    const auto result = mapped(systemError);
    return result ? *result : kPOSIXErrorBase + systemError;
}

}  // namespace portability
