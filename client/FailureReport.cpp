#include "client/FailureReport.h"

#include <utility>

#include "InterProcessCommunication/TransferObjText.h"
#include "client/exceptions/ExceptionTypeNames.h"
#include "platform/SystemException.h"
#include "platform/trace/StatusNames.h"
#include "platform/trace/TraceText.h"
#include "settings/MultiLanguageSupport.h"
#include "settings/TextKeys.h"

namespace dovrel {

namespace {

constexpr char kLineEnd[] = "\r";

std::unique_ptr<CPPException> orUnknownFailure(std::unique_ptr<CPPException> failure) {
    if (failure) return failure;
    return std::make_unique<CPPException>(
        MultiLanguageSupport::getText(kGeneralErrorUnknownException).c_str());
}

const char* orEmpty(const char* text) {
    return text != nullptr ? text : "";
}

// The type code identifies the class, so the cast is safe.
std::string systemStatusText(const CPPException& failure) {
    if (failure.getTypeCode() != exceptionTypeCode::kSystemException) return "";
    const int32_t status = static_cast<const SystemException&>(failure).getErrorCode();
    return status != 0 ? statusText(status) : "";
}

}  // namespace

FailureReport::FailureReport(std::unique_ptr<CPPException> failure, const char* applicationName) {
    const std::unique_ptr<CPPException> reported = orUnknownFailure(std::move(failure));
    typeCode = reported->getTypeCode();
    message = orEmpty(reported->getMessage());
    detail = orEmpty(reported->getDetail());
    if (detail == CPPException::kDefaultDetail) detail.clear();
    status = systemStatusText(*reported);

    body = MultiLanguageSupport::getText(kDllErrorMessageHeadPart1);
    body += applicationName;
    body += MultiLanguageSupport::getText(kDllErrorMessageHeadPart2);
    body += message;
    body += kLineEnd;
    body += kLineEnd;
    body += MultiLanguageSupport::getText(explanationKey(typeCode));
}

bool FailureReport::offersRetry() const {
    return typeCode == exceptionTypeCode::kPOSRegistration;
}

const char* explanationKey(uint32_t typeCode) {
    switch (typeCode) {
        case exceptionTypeCode::kPOSClassNotFound:
            return kDllErrorClassOrDriverNotFound;
        case exceptionTypeCode::kPOSObjectInstantiation:
            return kDllErrorObjectInstantiation;
        case exceptionTypeCode::kPOSRegistration:
            return kDllErrorRegistration;
        default:
            return kDllErrorUnrecoverableError;
    }
}

std::string traceText(const FailureReport& report, const FailureNotes& notes) {
    std::string text = "failure of type " + std::to_string(report.typeCode);
    if (const char* const name = exceptionTypeName(report.typeCode)) text = text + " (" + name + ")";
    if (!report.detail.empty()) text += ", detail \"" + traceOneLineText(report.detail) + "\"";
    if (!report.status.empty()) text += ", status " + report.status;
    if (!notes.foreignException().empty())
        text += ", exception " + traceOneLineText(notes.foreignException());
    if (notes.serverError()) text += ", error of the server: " + errorCodeText(notes.serverError()->code);
    if (!notes.failedStep().empty()) text += ", last failed step: " + notes.failedStep();
    if (!report.isShown) text += ", no alert";
    const bool isServersText = notes.serverError().has_value();
    if (!isServersText || Trace::wants(TraceArea::kSession, TraceLevel::kContents))
        text += ", message: " + traceValueText(report.message);
    return text;
}

}  // namespace dovrel
