#include "portability/files/FileErrors.h"

#include <CoreServices/MacErrors.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <utility>

using portability::fileError;
using portability::fileStatus;

TEST(FileErrors, KnownCauses_HaveTheirCodesInBothKindsOfCalls) {
    const std::pair<int, int> expected[] = {
        {0, 0},          {ENOENT, -43},         {ENOTDIR, -120}, {EEXIST, -48}, {ENOTEMPTY, -47},
        {EBUSY, -47},    {EACCES, -5000},       {EPERM, -5000},  {EROFS, -44},  {ENOSPC, -34},
        {EDQUOT, -1425}, {ENAMETOOLONG, -1410}, {EBADF, -51},    {EMFILE, -42}, {EIO, -36},
        {EINVAL, -50},   {ENOMEM, -108},        {EXDEV, -1303}};
    for (const auto& [cause, code] : expected) {
        EXPECT_EQ(fileError(cause), code) << cause;
        EXPECT_EQ(fileStatus(cause), code) << cause;
    }
}

TEST(FileErrors, OtherCauses_KeepTheirNumberOnlyWhereItFits) {
    EXPECT_EQ(fileError(ELOOP), ioErr);
    EXPECT_EQ(fileStatus(ELOOP), 100000 + ELOOP);
}
