// POSAccessUIDialogHandler: the frame in which every operation of the session runs. It catches what the
// operation throws, tells the user, and decides whether the operation is tried again. It also keeps what the
// host asked for at registration: which failures and which messages of the server are shown.
//
// Used under the session's lock, so at most one alert of the library is open at a time.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "InterProcessCommunication/POSTransferObjTrader.h"
#include "client/Attempt.h"
#include "client/ErrorLog.h"
#include "client/FailureReport.h"
#include "client/POSAccessClient.h"
#include "platform/trace/FailureNotes.h"
#include "ui/alerts/MessageDialog.h"

namespace dovrel {

class POSAccessUIDialogHandler {
  public:
    /// The flags of a registration; all are set unless an option code clears them.
    struct InteractionFlags {
        bool withoutOption1104 = true;          ///< kept, without further effect
        bool showsRegistrationFailures = true;  ///< failures of type 32 at registration
        bool showsServerMessages = true;
    };

    explicit POSAccessUIDialogHandler(std::unique_ptr<MessageDialog> dialog);

    /// The registry that knows the names of the applications. Not owned; must be set before the first
    /// operation.
    void setClient(POSAccessClient* client) { client_ = client; }

    /// The library's installed bundle. Loads the texts in the user's language; where there are none, lookups
    /// give "".
    void setBundlePath(const std::string& bundlePath);

    /// Sets all flags, then clears those whose codes are among the options. A length that holds no whole
    /// number of codes, and options that are null, count as none.
    void readOptions(const uint16_t* options, uint32_t optionsLength) noexcept;
    const InteractionFlags& flags() const { return flags_; }

    /// Runs `operation`, which returns a bool, until it returns or the user gives up. True if it returned
    /// true. If it returned false, nothing is shown; an error of the server is in the error log.
    template <typename Operation>
    bool run(uint32_t applicationId, const Operation& operation) noexcept {
        return runWithRetry(
            operation, [this, applicationId] { return client_->applicationName(applicationId); },
            &POSAccessUIDialogHandler::reportFailure);
    }

    /// The same for the registration of an application of that name.
    template <typename Operation>
    bool runRegistration(const char* applicationName, const Operation& operation) noexcept {
        return runWithRetry(
            operation, [applicationName] { return applicationName; },
            &POSAccessUIDialogHandler::reportRegistrationFailure);
    }

    /// Takes the failure (null: something that was no object of the family), shows it, and returns whether
    /// the operation is to be run again. A failure that cannot even be shown ends the operation.
    bool reportFailure(std::unique_ptr<CPPException> failure, const char* applicationName) noexcept;

    /// The same at registration: a failure of type 32 is shown only when the flag says so; before any failure
    /// is shown, the forwarder forgets its connection where no application is registered.
    bool reportRegistrationFailure(std::unique_ptr<CPPException> failure,
                                   const char* applicationName) noexcept;

    /// Before a registration is sent: makes ready what completeRegistration keeps, so that it cannot fail.
    void prepareRegistration(const char* applicationName);

    /// The application is registered: its name is the current one, and its messages are shown or not as the
    /// flags say.
    void completeRegistration(uint32_t applicationId) noexcept;

    /// The name of the application that was registered last.
    const std::string& currentApplicationName() const { return currentApplicationName_; }

    /// The application is no longer registered.
    void forgetApplication(uint32_t applicationId) noexcept;

    bool isSilenced(uint32_t applicationId) const;

    /// Shows a message that came with an answer, unless there is none, it is empty, or the application is
    /// silenced.
    void showServerMessage(uint32_t applicationId, const POSServerMessage& message) noexcept;

  private:
    using Report = bool (POSAccessUIDialogHandler::*)(std::unique_ptr<CPPException> failure,
                                                      const char* applicationName) noexcept;

    template <typename Operation, typename ApplicationName>
    bool runWithRetry(const Operation& operation, const ApplicationName& applicationName,
                      Report report) noexcept {
        for (;;) {
            notes_.clear();
            Attempt result = attempt(operation);
            if (result.succeeded) return true;
            if (!result.threw) {
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
    /// Applications whose server messages are not shown; no identifier twice.
    std::vector<uint32_t> silencedApplications_;
};

}  // namespace dovrel
