#include "ui/information/Component.h"

#include <gtest/gtest.h>

#include <string>

#include "ui/information/PropertyText.h"

namespace dovrel {
namespace {

TEST(Component, IdentifiersAndPaths_AreThoseOfTheProduct) {
    EXPECT_EQ(serverComponent().identifier, "com.Tessilor.POS");
    EXPECT_EQ(serverComponent().path, "/Library/Application Support/Tessilor/pos/Merrowd.app");
    EXPECT_EQ(libraryComponent().identifier, "com.Tessilor.POSAccess-DLL");
    EXPECT_EQ(libraryComponent().path, "/Library/Application Support/Tessilor/pos/Dovrel.bundle");
    EXPECT_EQ(siblingComponent().identifier, "com.Tessilor.Pell-DLL");
    EXPECT_EQ(siblingComponent().path, "/Library/Application Support/Tessilor/pos/Brasket.bundle");
    EXPECT_EQ(compatibilityComponent().identifier, "com.Tessilor.Compatibility-DLL");
    EXPECT_EQ(compatibilityComponent().path, "/Library/Quernvale/Fenwild.bundle");
    EXPECT_EQ(managementComponent().identifier, "com.Quernvale.Halcon");
    EXPECT_EQ(managementComponent().path, "/Applications/Halden Console.app");
}

TEST(Component, BundlesOfThisProduct_HaveTheIdentifiersAndAnInstallerVersion) {
    const auto readInfo = [](const char* bundle, const char* key) {
        return textInPropertyList(std::string(bundle) + "/Contents/Info.plist", key);
    };
    EXPECT_EQ(readInfo(MERROWD_APP, "CFBundleIdentifier"), serverComponent().identifier);
    EXPECT_EQ(readInfo(DOVREL_BUNDLE, "CFBundleIdentifier"), libraryComponent().identifier);
    for (const char* bundle : {MERROWD_APP, DOVREL_BUNDLE})
        EXPECT_EQ(readInfo(bundle, "HarlInstallerVersion"), readInfo(bundle, "CFBundleVersion"));
}

TEST(Component, IdentifierAccessors_TellThoseOfTheThreeBundles) {
    EXPECT_EQ(libraryIdentifier(), "com.Tessilor.POSAccess-DLL");
    EXPECT_EQ(siblingIdentifier(), "com.Tessilor.Pell-DLL");
    EXPECT_EQ(compatibilityIdentifier(), "com.Tessilor.Compatibility-DLL");
}

}  // namespace
}  // namespace dovrel
