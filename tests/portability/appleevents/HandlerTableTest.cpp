#include "portability/appleevents/HandlerTable.h"

#include <gtest/gtest.h>

using namespace portability;

namespace {

OSErr one(const AppleEvent*, AppleEvent*, SRefCon) {
    return noErr;
}

OSErr other(const AppleEvent*, AppleEvent*, SRefCon) {
    return noErr;
}

HandlerTable::Entry entry(AEEventClass eventClass, AEEventID id, AEEventHandlerUPP handler = one,
                          bool system = false) {
    return {system, eventClass, id, handler, SRefCon()};
}

}  // namespace

TEST(HandlerTable, HandlersFor_MostSpecificFirst_ApplicationBeforeSystem) {
    HandlerTable table;
    table.install(entry('clas', 'idid', one, /*system=*/true));
    table.install(entry(typeWildCard, typeWildCard));
    table.install(entry(typeWildCard, 'idid'));
    table.install(entry('clas', typeWildCard));
    table.install(entry('clas', 'idid'));
    table.install(entry('othr', 'idid'));
    const auto found = table.handlersFor('clas', 'idid');
    ASSERT_EQ(found.size(), 5u);
    EXPECT_TRUE(!found[0].system && found[0].eventClass == 'clas' && found[0].eventID == 'idid');
    EXPECT_TRUE(found[1].eventClass == 'clas' && found[1].eventID == typeWildCard);
    EXPECT_TRUE(found[2].eventClass == typeWildCard && found[2].eventID == 'idid');
    EXPECT_TRUE(!found[3].system && found[3].eventClass == typeWildCard && found[3].eventID == typeWildCard);
    EXPECT_TRUE(found[4].system);
}

TEST(HandlerTable, HandlersFor_HasRoomForAllThatCanMatch) {
    HandlerTable table;
    for (const bool isSystem : {true, false}) {
        for (const AEEventClass eventClass : {AEEventClass{typeWildCard}, AEEventClass{'clas'}}) {
            table.install(entry(eventClass, typeWildCard, one, isSystem));
            table.install(entry(eventClass, 'idid', one, isSystem));
        }
    }
    const auto found = table.handlersFor('clas', 'idid');
    ASSERT_EQ(found.size(), 8u);
    EXPECT_EQ(found.end() - found.begin(), 8);
    EXPECT_TRUE(!found[0].system && found[0].eventClass == 'clas' && found[0].eventID == 'idid');
    EXPECT_TRUE(found[7].system && found[7].eventClass == typeWildCard && found[7].eventID == typeWildCard);
}

TEST(HandlerTable, Install_SameEvents_ReplacesIt) {
    HandlerTable table;
    table.install(entry('clas', 'idid', one));
    table.install(entry('clas', 'idid', other));
    const auto found = table.handlersFor('clas', 'idid');
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].handler, other);
}

TEST(HandlerTable, InstallIfAbsent_LeavesWhatIsThere) {
    HandlerTable table;
    EXPECT_TRUE(table.installIfAbsent(entry('clas', 'idid', one)));
    EXPECT_FALSE(table.installIfAbsent(entry('clas', 'idid', other)));
    EXPECT_EQ(table.handlersFor('clas', 'idid')[0].handler, one);
}

TEST(HandlerTable, Remove_ComparesTheHandlerUnlessItIsNull) {
    HandlerTable table;
    table.install(entry('clas', 'idid', one));
    EXPECT_FALSE(table.remove(entry('clas', 'idid', other)));
    EXPECT_FALSE(table.remove(entry('clas', 'othr', one)));
    EXPECT_FALSE(table.remove(entry('clas', 'idid', one, /*system=*/true)));
    EXPECT_TRUE(table.remove(entry('clas', 'idid', nullptr)));
    EXPECT_FALSE(table.remove(entry('clas', 'idid', nullptr)));
}
