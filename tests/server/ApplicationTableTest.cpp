#include "server/ApplicationTable.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <set>

namespace merrowd::test {
namespace {

uint32_t readCode(const std::function<void()>& operation) {
    try {
        operation();
    } catch (const Refusal& refusal) {
        return refusal.code;
    }
    return 0;
}

Application named(const std::string& name, pid_t process = 0) {
    Application application;
    application.name = name;
    application.process = process;
    return application;
}

TEST(ApplicationTable, Add_CountsUpFromTheFirstIdentifier) {
    ApplicationTable table(100);
    EXPECT_EQ(table.add(named("One")), 100u);
    EXPECT_EQ(table.add(named("Two")), 101u);
    EXPECT_EQ(table.find(100).name, "One");
    EXPECT_EQ(table.find(101).name, "Two");
}

TEST(ApplicationTable, Add_AtTheEndOfTheNumbers_SkipsThoseThatStandForNoApplicationAndThoseInUse) {
    ApplicationTable table(0xFFFFFFFE);
    EXPECT_EQ(table.add(named("One")), 0xFFFFFFFEu);
    EXPECT_EQ(table.add(named("Two")), 1u);
    ApplicationTable full(0xFFFFFFFF);
    EXPECT_EQ(full.add(named("One")), 1u);
}

TEST(ApplicationTable, Find_OfARemovedOne_IsApplicationNotRegistered) {
    ApplicationTable table(1);
    table.remove(table.add(named("One")));
    EXPECT_EQ(readCode([&] { table.find(1); }), 34u);
    EXPECT_EQ(readCode([&] { table.remove(1); }), 34u);
    EXPECT_EQ(table.size(), 0u);
}

TEST(ApplicationTable, AddObject_ReturnsADifferentIdentifierForEachObjectOfAllApplications) {
    ApplicationTable table(1);
    const uint32_t one = table.add(named("One"));
    const uint32_t two = table.add(named("Two"));
    std::set<Identifier> identifiers;
    for (int i = 0; i < 100; ++i) {
        identifiers.insert(table.addObject(one, ObjectRecord()));
        identifiers.insert(table.addObject(two, ObjectRecord()));
    }
    EXPECT_EQ(identifiers.size(), 200u);
    EXPECT_EQ(table.objectCount(), 200u);
}

TEST(ApplicationTable, FindObject_OfAnotherApplication_IsObjectNotFound) {
    ApplicationTable table(1);
    const uint32_t one = table.add(named("One"));
    const uint32_t two = table.add(named("Two"));
    const Identifier object = table.addObject(one, ObjectRecord());
    EXPECT_NO_THROW(table.findObject(one, object));
    EXPECT_EQ(readCode([&] { table.findObject(two, object); }), 25u);
    EXPECT_EQ(readCode([&] { table.removeObject(two, object); }), 25u);
    EXPECT_EQ(readCode([&] { table.findObject(3, object); }), 34u);
}

TEST(ApplicationTable, RemoveObject_TakesOneObjectAway) {
    ApplicationTable table(1);
    const uint32_t one = table.add(named("One"));
    const Identifier first = table.addObject(one, ObjectRecord());
    const Identifier second = table.addObject(one, ObjectRecord());
    table.removeObject(one, first);
    EXPECT_EQ(readCode([&] { table.findObject(one, first); }), 25u);
    EXPECT_NO_THROW(table.findObject(one, second));
}

TEST(ApplicationTable, RemoveGone_ForgetsApplicationsOfEndedProcessesOnly) {
    const pid_t ended = fork();
    if (ended == 0) _exit(0);
    ASSERT_EQ(waitpid(ended, nullptr, 0), ended);

    ApplicationTable table(1);
    table.add(named("Gone", ended));
    const uint32_t running = table.add(named("Running", getpid()));
    const uint32_t unknown = table.add(named("Unknown"));
    table.removeGone();
    EXPECT_EQ(table.size(), 2u);
    EXPECT_EQ(table.find(running).name, "Running");
    EXPECT_EQ(table.find(unknown).name, "Unknown");
}

}  // namespace
}  // namespace merrowd::test
