// The alert on the platform's window system.
#pragma once

#include "ui/alerts/MessageDialog.h"

namespace dovrel {

/// Where no alert can be shown, the body goes to the system log and the answer is kAlertAnswerNotShown.
class MacOSXMessageDialog : public MessageDialog {
  public:
    using MessageDialog::showAlert;
    int showAlert(const char* title, const char* body, int buttons, int reserved) override;
};

}  // namespace dovrel
