#include "portability/corefoundation/PackedVersion.h"

#include <gtest/gtest.h>

using portability::packedVersion;

TEST(PackedVersion, EveryStage_HasItsByte) {
    EXPECT_EQ(packedVersion("3.4.5d6"), 0x03452006U);
    EXPECT_EQ(packedVersion("3.4.5a6"), 0x03454006U);
    EXPECT_EQ(packedVersion("3.4.5b6"), 0x03456006U);
    EXPECT_EQ(packedVersion("3.4.5f6"), 0x03458006U);
    EXPECT_EQ(packedVersion("3.4.5fc6"), 0x03458006U);
    EXPECT_EQ(packedVersion("3.4.5"), 0x03458000U);
}

TEST(PackedVersion, TwoDigitMajor_IsBinaryCodedDecimal) {
    EXPECT_EQ(packedVersion("99"), 0x99008000U);
    EXPECT_EQ(packedVersion("0.1"), 0x00108000U);
}

TEST(PackedVersion, OtherForms_AreZero) {
    for (const char* version : {"", " 1", "1 ", "v1", ".1", "1.", "1..2", "1.x", "1.2.3x4", "1.2-3", "123",
                                "1.2.34", "1.23.4", "1b256", "1b99999", "-1", "1.2.3.4", "11.2.3b0001"}) {
        EXPECT_EQ(packedVersion(version), 0U) << version;
    }
}
