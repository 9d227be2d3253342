#include "ui/alerts/MessageDialog.h"

#include "settings/MultiLanguageSupport.h"
#include "settings/TextKeys.h"

namespace dovrel {

void showInformationalMessage(MessageDialog& dialog, const InformationalMessage& message) {
    if (message.text.empty()) return;
    const std::string title = MultiLanguageSupport::getText(kDllMessageDialogTitle);
    dialog.showAlert(title.c_str(), message.text.c_str());
}

}  // namespace dovrel
