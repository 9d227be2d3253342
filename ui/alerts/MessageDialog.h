// The one way in which the library speaks to the user: a modal alert with a title, a body and one of a few
// button sets.
#pragma once

namespace dovrel {

/// Button sets of an alert. Any other number shows OK alone.
enum AlertButtons : int {
    kAlertButtonsOK = 0,
    kAlertButtonsOKCancel = 1,
    kAlertButtonsRetryCancel = 2,
    kAlertButtonsRetryCancelAlternative = 3
};

/// What an alert answers.
enum AlertAnswer : int {
    kAlertAnswerNotShown = 0,  ///< there was no way to show it; callers treat that as a refusal to retry
    kAlertAnswerRetry = 11,
    kAlertAnswerOK = 12,
    kAlertAnswerCancel = 13  ///< any button but the first
};

/// Contract of the alert. Blocks until the user has answered; never throws; null texts count as "". Any
/// thread may call: the alert itself is always run on the main thread.
class MessageDialog {
  public:
    virtual ~MessageDialog() = default;

    /// Shows `title` and `body` with the button set `buttons`; the last argument is reserved and ignored.
    /// Both texts are NUL-terminated, in UTF-8 or in the system's encoding (platform/text/ReadableText.h). Returns
    /// one of AlertAnswer.
    virtual int showAlert(const char* title, const char* body, int buttons, int reserved) = 0;

    /// The same with OK alone.
    int showAlert(const char* title, const char* body) { return showAlert(title, body, kAlertButtonsOK, 0); }

  protected:
    MessageDialog() = default;
    MessageDialog(const MessageDialog&) = default;
    MessageDialog& operator=(const MessageDialog&) = default;
};

}  // namespace dovrel
