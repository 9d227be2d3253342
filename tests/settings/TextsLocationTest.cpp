#include "settings/TextsLocation.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/files/Places.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/library/Failures.h"

namespace dovrel {
namespace {

TEST(TextsLocation, TextsFilePath_IsInTheResourcesOfTheLibrarysBundle) {
    const test::TemporaryFolder folder;
    EXPECT_EQ(textsFilePath(folder.path() + "/"),
              folder.path("Dovrel.bundle/Contents/Resources/MultiLanguageTexts.mls"));
    EXPECT_EQ(textsFilePath(folder.path("a b%20\xC3\xA9") + "/"),
              folder.path("a b%20\xC3\xA9/Dovrel.bundle/Contents/Resources/MultiLanguageTexts.mls"));
}

TEST(TextsLocation, TextsFilePath_OfTheInstallFolder_EndsWithItsPlace) {
    const std::string path = textsFilePath(places::kInstallFolder);
    const std::string end =
        "/Library/Application Support/Tessilor/pos/Dovrel.bundle/Contents/Resources/MultiLanguageTexts.mls";
    ASSERT_GE(path.size(), end.size());
    EXPECT_EQ(path.substr(path.size() - end.size()), end);
}

TEST(TextsLocation, TextsFilePath_FolderThatIsNoText_ThrowsTheSorryMessage) {
    EXPECT_EQ(test::failureText([] { textsFilePath("/folder\xFF/"); }),
              "Sorry, could not read file 'MultiLanguageTexts.mls'...");
}

TEST(TextsLocation, TextsFilePath_PathTooLongForTheSystem_ThrowsTheSorryMessage) {
    EXPECT_EQ(test::failureText([] { textsFilePath("/" + std::string(5000, 'a') + "/"); }),
              "Sorry, could not read file 'MultiLanguageTexts.mls'...");
}

}  // namespace
}  // namespace dovrel
