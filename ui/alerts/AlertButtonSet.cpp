#include "ui/alerts/AlertButtonSet.h"

#include "settings/TextKeys.h"
#include "ui/alerts/MessageDialog.h"

namespace dovrel {

AlertButtonSet alertButtonSet(int buttons) {
    switch (buttons) {
        case kAlertButtonsOKCancel:
            return {kGeneralButtonOk, kGeneralButtonCancel, kAlertAnswerOK};
        case kAlertButtonsRetryCancel:
        case kAlertButtonsRetryCancelAlternative:
            return {kGeneralButtonRetry, kGeneralButtonCancel, kAlertAnswerRetry};
        default:
            return {kGeneralButtonOk, nullptr, kAlertAnswerOK};
    }
}

int alertAnswer(const AlertButtonSet& set, bool pressedFirst) {
    return pressedFirst ? set.firstAnswer : int{kAlertAnswerCancel};
}

}  // namespace dovrel
