#include "platform/trace/FailureNotes.h"

#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <string>
#include <vector>

#include "client/exceptions/CPPException.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TraceLines.h"

namespace dovrel {
namespace {

constexpr auto kArea = TraceArea::kConnection;

std::string neverMade() {
    ADD_FAILURE() << "the text is made although nothing wants it";
    return "";
}

std::string withoutMemory() {
    throw std::bad_alloc();
}

void addStep(const std::string& step) {
    FailureNotes::addFailedStep(kArea, [&] { return step; });
}

TEST(FailureNotes, New_AreEmpty) {
    const FailureNotes notes;
    EXPECT_EQ(notes.failedStep(), "");
    EXPECT_EQ(notes.request(), "");
    EXPECT_FALSE(notes.serverError());
}

TEST(FailureNotes, FailedStep_IsTheLastOneUntilALaterAttemptSucceeds) {
    const FailureNotes notes;
    addStep("launch");
    addStep("wake");
    EXPECT_EQ(notes.failedStep(), "wake");
    FailureNotes::dropFailedStep(kArea);
    EXPECT_EQ(notes.failedStep(), "");
}

TEST(FailureNotes, FailedStep_IsThatOfTheConnectionAsLongAsItFails) {
    const FailureNotes notes;
    FailureNotes::addFailedStep(TraceArea::kConnection, [] { return std::string("wake"); });
    FailureNotes::addFailedStep(TraceArea::kExchange, [] { return std::string("call"); });
    EXPECT_EQ(notes.failedStep(), "wake");
    FailureNotes::dropFailedStep(TraceArea::kConnection);
    EXPECT_EQ(notes.failedStep(), "call");
    addStep("launch");
    FailureNotes::dropFailedSteps();
    EXPECT_EQ(notes.failedStep(), "");
}

TEST(FailureNotes, FailedStep_IsAnEntryOfTheTraceWithAndWithoutNotes) {
    const test::TemporaryFolder folder;
    {
        const Trace trace("connection:1,file=" + folder.path("trace"));
        addStep("without");
        const FailureNotes notes;
        addStep("with");
    }
    EXPECT_EQ(test::splitTraceLines(folder.read("trace")),
              (std::vector<std::string>{"connection: without", "connection: with"}));
}

TEST(FailureNotes, ServerError_HasTheCodeAndTheBytesOfTheText) {
    const FailureNotes notes;
    FailureNotes::addServerError(27, "no\xD2 method");
    FailureNotes::addServerError(0xFFFFFFFF, "x\xD3");
    ASSERT_TRUE(notes.serverError());
    EXPECT_EQ(notes.serverError()->code, 0xFFFFFFFF);
    EXPECT_EQ(notes.serverError()->text, "x\xD3");
}

TEST(FailureNotes, Clear_DropsEverything) {
    FailureNotes notes;
    addStep("wake");
    FailureNotes::addRequest([] { return std::string("call method"); });
    FailureNotes::addServerError(27, "text");
    FailureNotes::addForeignException("std::bad_alloc");
    EXPECT_EQ(notes.request(), "call method");
    EXPECT_EQ(notes.foreignException(), "std::bad_alloc");
    notes.clear();
    EXPECT_EQ(notes.foreignException(), "");
    EXPECT_EQ(notes.failedStep(), "");
    EXPECT_EQ(notes.request(), "");
    EXPECT_FALSE(notes.serverError());
}

TEST(FailureNotes, WithoutNotesAndTrace_NothingIsMade) {
    { const FailureNotes notes; }
    FailureNotes::addFailedStep(kArea, neverMade);
    FailureNotes::addRequest(neverMade);
    FailureNotes::addServerError(1, "text");
    FailureNotes::addForeignException("text");
    FailureNotes::dropFailedStep(kArea);
    FailureNotes::dropFailedSteps();
}

TEST(FailureNotes, NewestObject_ReceivesTheNotesAndAnOlderOneMayEndFirst) {
    auto older = std::make_unique<FailureNotes>();
    const FailureNotes newer;
    addStep("first");
    EXPECT_EQ(older->failedStep(), "");
    older.reset();
    addStep("second");
    EXPECT_EQ(newer.failedStep(), "second");
}

TEST(FailureNotes, TextThatCannotBeMade_LeavesNoStaleNote) {
    const FailureNotes notes;
    addStep("older");
    FailureNotes::addFailedStep(kArea, withoutMemory);
    EXPECT_EQ(notes.failedStep(), "");
    FailureNotes::addRequest(withoutMemory);
    EXPECT_EQ(notes.request(), "");
}

// The catching code owns the exception. If it does not free it, the leak checker reports it.
TEST(FailureNotes, TextWhoseMakingThrowsAFailureOfTheLibrary_LeavesNoNoteAndNoException) {
    const test::TemporaryFolder folder;
    const Trace trace("connection:1,file=" + folder.path("trace"));
    const FailureNotes notes;
    const auto fails = []() -> std::string { throw new CPPException("no text"); };
    FailureNotes::addFailedStep(kArea, fails);
    FailureNotes::addRequest(fails);
    EXPECT_EQ(notes.failedStep(), "");
    EXPECT_EQ(notes.request(), "");
    EXPECT_EQ(folder.read("trace"), "");
}

}  // namespace
}  // namespace dovrel
