#include "client/POSAccessUIDialogHandler.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "client/exceptions/POSException.h"
#include "dovrel/pos.h"
#include "settings/MultiLanguageSupport.h"
#include "settings/TextKeys.h"

namespace dovrel {

namespace {

/// A result of the alert about a failed registration that means "try again", as kAlertAnswerRetry does.
constexpr int kRegistrationRetryAnswer = 10;

/// Returns the exception for an error code for which CheckTransferObjReply throws nothing.
std::unique_ptr<CPPException> makeUnlistedError(const FailureNotes::ServerError& error) {
    const char* const text = error.text.c_str();
    if (error.code == exceptionTypeCode::kPOSLibraryNotFound)
        return std::make_unique<POSLibraryNotFoundException>(text);
    return std::make_unique<POSException>(text);
}

}  // namespace

POSAccessUIDialogHandler::POSAccessUIDialogHandler(std::unique_ptr<MessageDialog> dialog)
    : dialog_(std::move(dialog)) {}

void POSAccessUIDialogHandler::useBundle(const std::string& bundlePath) {
    errorLog_.useBundle(bundlePath);
    try {
        MultiLanguageSupport::initialize("");
    } catch (CPPException* caught) {
        // The session works without its texts.
        recordUnshown(std::unique_ptr<CPPException>(caught), "");
    } catch (const std::bad_alloc&) {
        // If there is no memory for the file of texts, alerts are shown as if it had no texts.
    }
}

void POSAccessUIDialogHandler::readOptions(const uint16_t* options, uint32_t optionsLength) noexcept {
    flags_ = InteractionFlags();
    if (options == nullptr || optionsLength % sizeof *options != 0) return;
    for (uint32_t index = 0; index < optionsLength / sizeof *options; ++index) {
        uint16_t code = 0;
        // The host's options need not be aligned for 16-bit numbers.
        std::memcpy(&code, options + index, sizeof code);
        if (code == POS_OPTION_1104) flags_.withoutOption1104 = false;
        if (code == POS_OPTION_SILENT_REGISTRATION) flags_.showsRegistrationFailures = false;
        if (code == POS_OPTION_SILENT_MESSAGES) flags_.showsServerMessages = false;
    }
}

bool POSAccessUIDialogHandler::reportFailure(std::unique_ptr<CPPException> failure,
                                             const char* applicationName) noexcept {
    bool wantsRetry = false;
    ignoringFailures([&] { wantsRetry = askUser(std::move(failure), applicationName) == kAlertAnswerRetry; });
    return wantsRetry;
}

bool POSAccessUIDialogHandler::reportRegistrationFailure(std::unique_ptr<CPPException> failure,
                                                         const char* applicationName) noexcept {
    const bool isRefusal = failure && failure->getTypeCode() == exceptionTypeCode::kPOSRegistration;
    if (isRefusal && !flags_.showsRegistrationFailures) {
        recordUnshown(std::move(failure), applicationName);
        return false;
    }
    client_->disconnectIfUnused();
    bool wantsRetry = false;
    ignoringFailures([&] {
        const int answer = askUser(std::move(failure), applicationName);
        wantsRetry = answer == kAlertAnswerRetry || (isRefusal && answer == kRegistrationRetryAnswer);
    });
    return wantsRetry;
}

void POSAccessUIDialogHandler::record(const FailureReport& report,
                                      const char* applicationName) const noexcept {
    errorLog_.append(applicationName, report, notes_);
    Trace::write(TraceArea::kSession, TraceLevel::kFailures, [&] { return traceText(report, notes_); });
}

void POSAccessUIDialogHandler::recordUnshown(std::unique_ptr<CPPException> failure,
                                             const char* applicationName) const noexcept {
    ignoringFailures([&] {
        FailureReport report(std::move(failure), applicationName);
        report.isShown = false;
        record(report, applicationName);
    });
}

void POSAccessUIDialogHandler::recordUnlistedError(const char* applicationName) const noexcept {
    const auto& error = notes_.serverError();
    if (!error) return;
    ignoringFailures([&] { recordUnshown(makeUnlistedError(*error), applicationName); });
}

/// Shows the failure and returns the user's answer to the last alert. Without a Retry button it never
/// returns kAlertAnswerRetry.
int POSAccessUIDialogHandler::askUser(std::unique_ptr<CPPException> failure, const char* applicationName) {
    const FailureReport report(std::move(failure), applicationName);
    record(report, applicationName);

    const std::string title = MultiLanguageSupport::getText(kDllErrorDialogTitle);
    if (!report.offersRetry()) {
        dialog_->showAlert(title.c_str(), report.body.c_str());
        return kAlertAnswerOK;
    }
    const int answer = dialog_->showAlert(title.c_str(), report.body.c_str(), kAlertButtonsRetryCancel, 0);
    if (answer != kAlertAnswerCancel) return answer;
    const std::string attention = MultiLanguageSupport::getText(kDllAttentionMessage);
    return dialog_->showAlert(title.c_str(), attention.c_str(), kAlertButtonsRetryCancel, 0);
}

void POSAccessUIDialogHandler::prepareRegistration(const char* applicationName) {
    pendingApplicationName_ = applicationName;
    silencedApplications_.reserve(silencedApplications_.size() + 1);
}

void POSAccessUIDialogHandler::completeRegistration(uint32_t applicationId) noexcept {
    currentApplicationName_.swap(pendingApplicationName_);
    forgetApplication(applicationId);
    if (!flags_.showsServerMessages) silencedApplications_.push_back(applicationId);
}

void POSAccessUIDialogHandler::forgetApplication(uint32_t applicationId) noexcept {
    auto& silenced = silencedApplications_;
    silenced.erase(std::remove(silenced.begin(), silenced.end(), applicationId), silenced.end());
}

bool POSAccessUIDialogHandler::isSilenced(uint32_t applicationId) const {
    const auto& silenced = silencedApplications_;
    return std::find(silenced.begin(), silenced.end(), applicationId) != silenced.end();
}

void POSAccessUIDialogHandler::showServerMessage(uint32_t applicationId,
                                                 const POSServerMessage& message) noexcept {
    if (!message.isPresent() || isSilenced(applicationId)) return;
    ignoringFailures([&] { showInformationalMessage(*dialog_, InformationalMessage{message.text}); });
}

}  // namespace dovrel
