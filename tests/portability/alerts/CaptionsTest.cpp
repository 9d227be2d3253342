#include "portability/alerts/helper/Captions.h"

#include "tests/portability/alerts/HelperTest.h"

namespace alerthelper::test {
namespace {

// Each user needs a separate process, because the libraries read the user's language only once.
struct User {
    const char* name;
    const char* languages;
    const char* help;
};

class HelpCaptionTest : public HelperTest, public testing::WithParamInterface<User> {};

TEST_P(HelpCaptionTest, HelpCaption_IsInTheUsersLanguageOrEnglish) {
    setenv("LANG", "C.UTF-8", 1);
    setenv("LANGUAGE", GetParam().languages, 1);
    EXPECT_STREQ(helpCaption(), GetParam().help);
}

INSTANTIATE_TEST_SUITE_P(Users, HelpCaptionTest,
                         testing::Values(User{"Austrian", "de_AT:en", "Hilfe"}, User{"French", "fr", "Aide"},
                                         User{"British", "en_GB", "Help"}, User{"Polish", "pl", "Help"},
                                         User{"PolishWithFrench", "pl:fr:de", "Aide"},
                                         User{"Any", "", "Help"}),
                         [](const auto& user) { return user.param.name; });

TEST(CaptionsTest, CaptionOrStandard_ReplacesEmptyCaptionsByTheDesktopsWords) {
    EXPECT_EQ(captionOrStandard({"", "", ""}, 0), "OK");
    EXPECT_EQ(captionOrStandard({"", "", ""}, 1), "OK");
    EXPECT_EQ(captionOrStandard({"", "", ""}, 2), "Cancel");
    EXPECT_EQ(captionOrStandard({""}, 0), "OK");
}

TEST(CaptionsTest, CaptionOrStandard_LeavesOtherCaptionsAsTheyAre) {
    EXPECT_EQ(captionOrStandard({"_A_", " ", ""}, 0), "_A_");
    EXPECT_EQ(captionOrStandard({"_A_", " ", ""}, 1), " ");
}

}  // namespace
}  // namespace alerthelper::test
