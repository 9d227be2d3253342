#include "client/FailureReport.h"

#include <utility>

#include "client/exceptions/ExceptionTypeCodes.h"
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

}  // namespace

FailureReport::FailureReport(std::unique_ptr<CPPException> failure, const char* applicationName) {
    const std::unique_ptr<CPPException> reported = orUnknownFailure(std::move(failure));
    typeCode = reported->getTypeCode();
    if (reported->getMessage() != nullptr) message = reported->getMessage();

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

}  // namespace dovrel
