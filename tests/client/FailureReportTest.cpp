#include "client/FailureReport.h"

#include <gtest/gtest.h>

#include <functional>

#include "client/exceptions/POSException.h"
#include "client/exceptions/StructuredDataExceptions.h"
#include "platform/SystemException.h"
#include "tests/client/SessionTest.h"

namespace dovrel {
namespace {

using test::reportBody;

struct Row {
    const char* name;
    std::function<CPPException*()> make;
    uint32_t typeCode;
    const char* explanation;  ///< one of the fixture's texts
};

template <typename Exception>
CPPException* made() {
    return new Exception("what happened");
}

const Row kRows[] = {
    {"CPPException", made<CPPException>, 0, "Stopped."},
    {"POSException", made<POSException>, 23, "Stopped."},
    {"POSClassNotFound", made<POSClassNotFoundException>, 24, "Driver."},
    {"POSObjectNotFound", made<POSObjectNotFoundException>, 25, "Stopped."},
    {"POSObjectInstantiation", made<POSObjectInstantiationException>, 26, "Object."},
    {"POSMethodNotFound", made<POSMethodNotFoundException>, 27, "Stopped."},
    {"POSMethodExecution", made<POSMethodExecutionException>, 28, "Stopped."},
    {"POSParameterFormat", made<POSParameterFormatException>, 30, "Stopped."},
    {"POSRegistration", made<POSRegistrationException>, 32, "Register."},
    {"POSClassPackageNotProcessed", made<POSClassPackageNotProcessedException>, 33, "Stopped."},
    {"POSApplicationNotRegistered", made<POSApplicationNotRegisteredException>, 34, "Stopped."},
    {"POSLibraryNotFound", made<POSLibraryNotFoundException>, 36, "Stopped."},
    {"POSClassPackageNotFound", made<POSClassPackageNotFoundException>, 43, "Stopped."},
    {"POSExecuterReturnedErrorCode", made<POSExecuterReturnedErrorCodeException>, 145, "Stopped."},
    {"POSCommandNotExecuted", made<POSCommandNotExecutedException>, 146, "Stopped."},
    // Classes without a row in the server's table get the explanation of an unspecific failure.
    {"StructuredReaderNotInitialized", made<StructuredReaderNotInitializedException>, 2, "Stopped."},
    {"PartNotFound", made<PartNotFoundException>, 3, "Stopped."},
    {"StructuredWriterNotInitialized", made<StructuredWriterNotInitializedException>, 4, "Stopped."},
    {"StructuredWriteFailed", made<StructuredWriteFailedException>, 5, "Stopped."},
};

class FailureReportRowTest : public test::SystemRootTest, public testing::WithParamInterface<Row> {};

TEST_P(FailureReportRowTest, Body_IsHeadNameMessageAndTheExplanationOfTheType) {
    const FailureReport report(std::unique_ptr<CPPException>(GetParam().make()), "Editor");
    EXPECT_EQ(report.typeCode, GetParam().typeCode);
    EXPECT_EQ(report.message, "what happened");
    EXPECT_EQ(report.body, reportBody("Editor", "what happened", GetParam().explanation));
}

TEST_P(FailureReportRowTest, Retry_IsOfferedForRegistrationsOnly) {
    const FailureReport report(std::unique_ptr<CPPException>(GetParam().make()), "Editor");
    EXPECT_EQ(report.offersRetry(), GetParam().typeCode == 32);
}

INSTANTIATE_TEST_SUITE_P(EveryType, FailureReportRowTest, testing::ValuesIn(kRows),
                         [](const auto& row) { return row.param.name; });

class FailureReportTest : public test::SystemRootTest {};

TEST_F(FailureReportTest, SystemException_IsUnrecoverable) {
    const FailureReport report(std::make_unique<SystemException>(-5), "Editor");
    EXPECT_EQ(report.typeCode, 44u);
    EXPECT_EQ(report.body, reportBody("Editor", "System error: -5", "Stopped."));
}

TEST_F(FailureReportTest, NoObject_IsTheUnknownFailureAndUnrecoverable) {
    const FailureReport report(nullptr, "Editor");
    EXPECT_EQ(report.typeCode, 0u);
    EXPECT_EQ(report.body, reportBody("Editor", "Nobody knows.", "Stopped."));
}

TEST_F(FailureReportTest, NoMessage_CountsAsEmpty) {
    const FailureReport report(std::make_unique<CPPException>(), "Editor");
    EXPECT_EQ(report.message, "");
    EXPECT_EQ(report.body, reportBody("Editor", "", "Stopped."));
}

TEST_F(FailureReportTest, Detail_IsTheExceptionsUnlessItIsTheDefault) {
    EXPECT_EQ(FailureReport(std::make_unique<CPPException>("1"), "Editor").detail, "");
    auto failure = std::make_unique<PartNotFoundException>("1");
    failure->setDetail("384181A400FA: ");
    EXPECT_EQ(FailureReport(std::move(failure), "Editor").detail, "384181A400FA: ");
    failure = std::make_unique<PartNotFoundException>("1");
    failure->setDetail("");
    EXPECT_EQ(FailureReport(std::move(failure), "Editor").detail, "");
}

TEST_F(FailureReportTest, Status_IsThatOfASystemExceptionWithItsName) {
    EXPECT_EQ(FailureReport(std::make_unique<SystemException>(-50), "Editor").status, "-50 (paramErr)");
    EXPECT_EQ(FailureReport(std::make_unique<SystemException>(0), "Editor").status, "");
    EXPECT_EQ(FailureReport(std::make_unique<CPPException>("1"), "Editor").status, "");
}

TEST_F(FailureReportTest, TraceText_HasWhatTheAlertLeavesOut) {
    auto failure = std::make_unique<PartNotFoundException>("2");
    failure->setDetail("384181A400FA: ");
    FailureReport report(std::move(failure), "Editor");
    const FailureNotes notes;
    EXPECT_EQ(traceText(report, notes),
              "failure of type 3 (missing field), detail \"384181A400FA: \", message: 2");
    FailureNotes::addFailedStep(TraceArea::kConnection, [] { return std::string("wake: -600"); });
    report.isShown = false;
    EXPECT_EQ(
        traceText(report, notes),
        "failure of type 3 (missing field), detail \"384181A400FA: \", last failed step: wake: -600, no "
        "alert, message: 2");
    EXPECT_EQ(
        traceText(FailureReport(std::make_unique<SystemException>(-50), "Editor"), FailureNotes()),
        "failure of type 44 (call of the operating system failed), status -50 (paramErr), message: System "
        "error: -50");
}

TEST_F(FailureReportTest, TraceText_NamesAnExceptionThatIsNotOfTheLibrary) {
    const FailureNotes notes;
    FailureNotes::addForeignException("std::bad_alloc");
    EXPECT_EQ(traceText(FailureReport(nullptr, "Editor"), notes),
              "failure of type 0 (no type of its own), exception std::bad_alloc, message: Nobody knows.");
}

TEST_F(FailureReportTest, TraceText_HoldsTheTextOfTheServerAtTheLevelOfContentsOnly) {
    const FailureReport report(std::make_unique<POSMethodNotFoundException>("a secret\rdovrel 1"), "Editor");
    const FailureNotes notes;
    FailureNotes::addServerError(27, "a secret");
    const std::string start =
        "failure of type 27 (method not found), error of the server: 27 (method not found)";
    for (const char* areas : {"session:2", "exchange:3"}) {
        const Trace trace(areas + (",file=" + root_.path("trace")));
        EXPECT_EQ(traceText(report, notes), start) << areas;
    }
    const Trace trace("session:3,file=" + root_.path("trace"));
    EXPECT_EQ(traceText(report, notes), start + ", message: a secret\n| dovrel 1");
}

TEST_F(FailureReportTest, UnlistedTypeCodes_AreUnrecoverable) {
    for (uint32_t code : {1u, 6u, 22u, 29u, 31u, 35u, 37u, 42u, 144u, 147u, 151u, 0xFFFFFFFFu}) {
        EXPECT_STREQ(explanationKey(code), "DLL_ERROR_UNRECOVERABLE_ERROR") << code;
    }
}

}  // namespace
}  // namespace dovrel
