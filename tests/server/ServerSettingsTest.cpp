#include "server/ServerSettings.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace merrowd::test {
namespace {

using Problems = std::vector<std::string>;

class ServerSettingsTest : public testing::Test {
  protected:
    Problems apply(const std::string& text) {
        Problems problems;
        for (const SettingsSection& section : readSettingsText(text, problems))
            applied_ = applySettings(section, settings_, problems);
        return problems;
    }

    ServerSettings settings_;
    std::set<std::string> applied_;
};

TEST_F(ServerSettingsTest, Defaults_AreThoseOfAServerThatBehaves) {
    EXPECT_FALSE(settings_.log);
    EXPECT_FALSE(settings_.endWithLastClient);
    EXPECT_FALSE(settings_.endAtStart);
    EXPECT_FALSE(settings_.checkClasses);
    EXPECT_EQ(settings_.interfaceVersion, 7u);
    EXPECT_EQ(settings_.handshake, Handshake::answered);
    EXPECT_EQ(settings_.misbehaviour.fault, Fault::none);
}

TEST_F(ServerSettingsTest, Apply_TakesEverySettingOver) {
    EXPECT_EQ(
        apply("//log\nINT:1\n//endWithLastClient\nINT:1\n//endAtStart\nINT:1\n//checkClasses\nINT:1\n"
              "//interfaceVersion\nINT:8\n//handshake\nSTR:empty\n//misbehave\nSTR:error\n"
              "//misbehaveCommand\nSTR:call method\n//misbehaveSkip\nINT:2\n//misbehaveTimes\nINT:3\n"
              "//delay\nINT:4\n//cutTo\nINT:5\n//errorCode\nINT:28\n//errorText\nSTR:Oh no.\n"
              "//messageFlags\nINT:6\n//messageText\nSTR:Hi.\n//hugeSize\nINT:7\n//eventStatus\nINT:-8\n"),
        Problems());
    EXPECT_TRUE(settings_.log);
    EXPECT_TRUE(settings_.endWithLastClient);
    EXPECT_TRUE(settings_.endAtStart);
    EXPECT_TRUE(settings_.checkClasses);
    EXPECT_EQ(settings_.interfaceVersion, 8u);
    EXPECT_EQ(settings_.handshake, Handshake::empty);
    const Misbehaviour& misbehaviour = settings_.misbehaviour;
    EXPECT_EQ(misbehaviour.fault, Fault::error);
    EXPECT_EQ(misbehaviour.command, 14u);
    EXPECT_EQ(misbehaviour.skip, 2u);
    EXPECT_EQ(misbehaviour.times, 3u);
    EXPECT_EQ(misbehaviour.delay, std::chrono::milliseconds(4));
    EXPECT_EQ(misbehaviour.cutTo, 5u);
    EXPECT_EQ(misbehaviour.errorCode, 28u);
    EXPECT_EQ(misbehaviour.errorText, "Oh no.");
    EXPECT_EQ(misbehaviour.messageFlags, 6u);
    EXPECT_EQ(misbehaviour.messageText, "Hi.");
    EXPECT_EQ(misbehaviour.hugeSize, 7u);
    EXPECT_EQ(misbehaviour.eventStatus, -8);
}

TEST_F(ServerSettingsTest, Apply_KnowsEveryFaultByName) {
    const std::pair<const char*, Fault> faults[] = {{"none", Fault::none},
                                                    {"late", Fault::late},
                                                    {"silent", Fault::silent},
                                                    {"vanishBefore", Fault::vanishBefore},
                                                    {"vanishDuring", Fault::vanishDuring},
                                                    {"vanishAfter", Fault::vanishAfter},
                                                    {"cut", Fault::cut},
                                                    {"garbage", Fault::garbage},
                                                    {"empty", Fault::empty},
                                                    {"noParameter", Fault::noParameter},
                                                    {"failedEvent", Fault::failedEvent},
                                                    {"error", Fault::error},
                                                    {"message", Fault::message},
                                                    {"huge", Fault::huge}};
    for (const auto& fault : faults) {
        EXPECT_EQ(apply(std::string("//misbehave\nSTR:") + fault.first + "\n"), Problems());
        EXPECT_EQ(settings_.misbehaviour.fault, fault.second) << fault.first;
    }
}

TEST_F(ServerSettingsTest, Apply_LeavesSettingsWithoutAnEntryAsTheyAre) {
    apply("//log\nINT:1\n//misbehave\nSTR:late\n//delay\nINT:9\n");
    apply("//checkClasses\nINT:1\n");
    EXPECT_TRUE(settings_.log);
    EXPECT_EQ(settings_.misbehaviour.delay, std::chrono::milliseconds(9));
}

TEST_F(ServerSettingsTest, Apply_OfAMisbehaviour_StartsTheWholeMisbehaviourAnew) {
    apply("//misbehave\nSTR:error\n//errorCode\nINT:9\n//misbehaveTimes\nINT:1\n");
    settings_.misbehaviour.strikes(14);
    apply("//misbehave\nSTR:error\n");
    EXPECT_EQ(settings_.misbehaviour.errorCode, 0u);
    EXPECT_TRUE(settings_.misbehaviour.strikes(14));
}

TEST_F(ServerSettingsTest, Apply_OfValuesThatDoNotFit_ChangesNothingAndSaysSo) {
    EXPECT_EQ(apply("//log\nSTR:yes\n//handshake\nSTR:never\n//misbehaveCommand\nINT:14\n"),
              (Problems{"line 1: the value \"yes\" of \"log\" does not fit; expected a number from 0 to 1",
                        "line 3: the value \"never\" of \"handshake\" does not fit; expected one of "
                        "answered, silent, empty, "
                        "noParameter",
                        "line 5: the value \"14\" of \"misbehaveCommand\" does not fit; expected the name of "
                        "a command, as in "
                        "\"call method\""}));
    EXPECT_FALSE(settings_.log);
    EXPECT_EQ(settings_.handshake, Handshake::answered);
}

TEST_F(ServerSettingsTest, Apply_OfAnUnknownSetting_SaysSoAndTakesTheOthersOver) {
    EXPECT_EQ(apply("//Log\nINT:1\n//checkClasses\nINT:1\n"),
              (Problems{"line 1: there is no setting \"Log\""}));
    EXPECT_TRUE(settings_.checkClasses);
}

TEST_F(ServerSettingsTest, Apply_ReturnsTheSettingsThatItHasApplied) {
    apply("//log\nSTR:yes\n//Log\nINT:1\n//checkClasses\nINT:1\n//cutTo\nINT:5\n");
    EXPECT_EQ(applied_, (std::set<std::string>{"checkClasses", "cutTo"}));
}

}  // namespace
}  // namespace merrowd::test
