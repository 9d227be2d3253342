// MacOSXMessageDialog: shows alerts with the platform's window system.
#pragma once

#include "ui/alerts/MessageDialog.h"

namespace dovrel {

/// If the alert cannot be shown, it writes the body to the system log and returns kAlertAnswerNotShown.
class MacOSXMessageDialog : public MessageDialog {
  public:
    using MessageDialog::showAlert;
    int showAlert(const char* title, const char* body, int buttons, int reserved) override;
};

}  // namespace dovrel
