// MessageDialog: a modal alert with a title, a body and one of a few button sets. The library uses no other
// way to show something to the user.
#pragma once

#include <string>

namespace dovrel {

/// The button sets of an alert. Any other number shows OK alone.
enum AlertButtons : int {
    kAlertButtonsOK = 0,
    kAlertButtonsOKCancel = 1,
    kAlertButtonsRetryCancel = 2,
    kAlertButtonsRetryCancelAlternative = 3
};

/// The results of an alert.
enum AlertAnswer : int {
    kAlertAnswerNotShown = 0,  ///< the alert could not be shown; callers treat this as a refusal to retry
    kAlertAnswerRetry = 11,
    kAlertAnswerOK = 12,
    kAlertAnswerCancel = 13  ///< any button except the first
};

/// The interface of the alert. It blocks until the user has answered, never throws, and treats null texts as
/// "". Any thread may call it. The platform's MPRemoteCall decides on which thread the alert itself runs: on
/// macOS it is the main thread.
class MessageDialog {
  public:
    virtual ~MessageDialog() = default;

    /// Shows `title` and `body` with the button set `buttons`. `reserved` is ignored. Both texts are
    /// NUL-terminated, in UTF-8 or in the system's encoding (platform/text/ReadableText.h). Returns an
    /// AlertAnswer.
    virtual int showAlert(const char* title, const char* body, int buttons, int reserved) = 0;

    /// As above with OK alone.
    int showAlert(const char* title, const char* body) { return showAlert(title, body, kAlertButtonsOK, 0); }

  protected:
    MessageDialog() = default;
    MessageDialog(const MessageDialog&) = default;
    MessageDialog& operator=(const MessageDialog&) = default;
};

/// A message for the user that does not report a failure.
struct InformationalMessage {
    std::string text;  ///< the server's bytes (see platform/text/ReadableText.h); empty: no message
};

/// Shows the message with an OK button, under the title for messages. Does nothing if the text is empty.
void showInformationalMessage(MessageDialog& dialog, const InformationalMessage& message);

}  // namespace dovrel
