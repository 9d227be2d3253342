// POSAccessUIDialogHandler: runs every operation of the session. It catches the exceptions that an operation
// throws, shows the failure to the user and decides whether the operation runs again. It also keeps the
// host's choices at registration: which failures and which messages of the server are shown.
//
// It is used under the session's lock, so at most one alert of the library is open at a time.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "InterProcessCommunication/POSTransferObjTrader.h"
#include "client/ErrorLog.h"
#include "client/FailureReport.h"
#include "client/OperationResult.h"
#include "client/POSAccessClient.h"
#include "platform/trace/FailureNotes.h"
#include "ui/alerts/MessageDialog.h"

namespace dovrel {

class POSAccessUIDialogHandler {
  public:
    /// The flags of a registration. All are set unless an option code clears them.
    struct InteractionFlags {
        bool withoutOption1104 = true;          ///< kept, but has no effect
        bool showsRegistrationFailures = true;  ///< shows failures of type 32 at registration
        bool showsServerMessages = true;
    };

    explicit POSAccessUIDialogHandler(std::unique_ptr<MessageDialog> dialog);

    /// Sets the registry, which knows the names of the applications. It is not owned and must be set before
    /// the first operation.
    void setClient(POSAccessClient* client) { client_ = client; }

    /// Uses the library's installed bundle, whose path is given: reads its version for the error log and loads
    /// the texts in the user's language. If the texts cannot be loaded, later lookups return "".
    void useBundle(const std::string& bundlePath);

    /// Sets all flags, then clears those whose codes are among the options. Null options, and an odd length (a
    /// code has two bytes), count as no options.
    void readOptions(const uint16_t* options, uint32_t optionsLength) noexcept;
    const InteractionFlags& flags() const { return flags_; }

    /// Runs `operation`, which returns a POSOutcome, until it returns or the user gives up. Returns true if
    /// the outcome is POSOutcome::kDone. After POSOutcome::kUnlistedError no alert is shown, and the error of
    /// the server is written to the error log.
    template <typename Operation>
    bool run(uint32_t applicationId, const Operation& operation) noexcept {
        return runWithRetry(
            operation, [this, applicationId] { return client_->applicationName(applicationId); },
            &POSAccessUIDialogHandler::reportFailure);
    }

    /// Does the same for the registration of an application of the given name.
    template <typename Operation>
    bool runRegistration(const char* applicationName, const Operation& operation) noexcept {
        return runWithRetry(
            operation, [applicationName] { return applicationName; },
            &POSAccessUIDialogHandler::reportRegistrationFailure);
    }

    /// Takes ownership of the failure, shows it, and returns whether the operation is to run again. Null
    /// means that the thrown object was not a CPPException. If the failure cannot be shown, the operation is
    /// not run again.
    bool reportFailure(std::unique_ptr<CPPException> failure, const char* applicationName) noexcept;

    /// Does the same for a registration. A failure of type 32 is shown only if showsRegistrationFailures is
    /// set. Before a failure is shown, the forwarder forgets its connection if no application is registered.
    bool reportRegistrationFailure(std::unique_ptr<CPPException> failure,
                                   const char* applicationName) noexcept;

    /// Allocates the memory that completeRegistration needs, so that completeRegistration cannot fail. Call it
    /// before the registration is sent. Throws std::bad_alloc.
    void prepareRegistration(const char* applicationName);

    /// Records that the application is registered: its name becomes the current one. The server's messages
    /// for it are shown or silenced, as the flags say.
    void completeRegistration(uint32_t applicationId) noexcept;

    /// Returns the name of the application that was registered last.
    const std::string& currentApplicationName() const { return currentApplicationName_; }

    /// Records that the application is no longer registered.
    void forgetApplication(uint32_t applicationId) noexcept;

    bool isSilenced(uint32_t applicationId) const;

    /// Shows the message of a server's reply. Does nothing if there is no message, if its text is empty, or
    /// if the application is silenced. Failures are ignored.
    void showServerMessage(uint32_t applicationId, const POSServerMessage& message) noexcept;

  private:
    using Report = bool (POSAccessUIDialogHandler::*)(std::unique_ptr<CPPException> failure,
                                                      const char* applicationName) noexcept;

    template <typename Operation, typename ApplicationName>
    bool runWithRetry(const Operation& operation, const ApplicationName& applicationName,
                      Report report) noexcept {
        for (;;) {
            notes_.clear();
            OperationResult result = runCatching(operation);
            if (result.outcome == POSOutcome::kDone) return true;
            if (result.outcome == POSOutcome::kUnlistedError) {
                recordUnlistedError(applicationName());
                return false;
            }
            if (!(this->*report)(std::move(result.failure), applicationName())) return false;
        }
    }

    void record(const FailureReport& report, const char* applicationName) const noexcept;
    void recordUnshown(std::unique_ptr<CPPException> failure, const char* applicationName) const noexcept;
    void recordUnlistedError(const char* applicationName) const noexcept;
    int askUser(std::unique_ptr<CPPException> failure, const char* applicationName);

    POSAccessClient* client_ = nullptr;
    std::unique_ptr<MessageDialog> dialog_;
    ErrorLog errorLog_;
    FailureNotes notes_;
    InteractionFlags flags_;
    std::string currentApplicationName_;
    std::string pendingApplicationName_;
    /// The applications whose server messages are not shown. Each identifier is in the list once.
    std::vector<uint32_t> silencedApplications_;
};

}  // namespace dovrel
