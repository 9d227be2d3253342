#include "ui/alerts/MacOSXMessageDialog.h"

#include <CoreServices/CoreServices.h>

#include <string>

#include "platform/AutoreleasePool.h"
#include "platform/text/ReadableText.h"
#include "platform/text/TextConversions.h"
#include "platform/trace/SystemLog.h"
#include "settings/MultiLanguageSupport.h"
#include "ui/alerts/AlertButtonSet.h"
#include "ui/alerts/HelpPages.h"
#include "ui/alerts/ModalAlert.h"
#include "ui/information/ManagementApplication.h"

namespace dovrel {

namespace {

struct AlertRequest {
    const char* title;
    const char* body;
    int buttons;
    int answer;
};

/// The text around the body of an alert that was not shown.
constexpr char kUnshownAlertStart[] =
    "Couldn't initialise NSApplication! No Error dialogue shown; message of the failed dialogue:  \n \"";
constexpr char kUnshownAlertEnd[] = "\"\n";

/// Returns the text in UTF-8. It can have any encoding that readableText() knows. Each line end becomes one line
/// feed, because not every window system breaks a line at a carriage return.
std::string shownText(const std::string& text) {
    return withLineFeedsOnly(readableText(text));
}

std::string captionText(const char* key) {
    return shownText(MultiLanguageSupport::getText(key));
}

void openHelpPages() {
    try {
        openHelp();
    } catch (...) {
        // Memory has run out. The alert stays on the screen.
    }
}

int runAlert(const AlertRequest& request) {
    const AlertButtonSet set = alertButtonSet(request.buttons);
    const std::string title = shownText(request.title);
    const std::string body = shownText(request.body);
    const std::string first = captionText(set.firstKey);
    const std::string second = set.secondKey != nullptr ? captionText(set.secondKey) : std::string();
    const ModalAlert alert = {title.c_str(), body.c_str(), first.c_str(),
                              set.secondKey != nullptr ? second.c_str() : nullptr,
                              isManagementApplication() ? openHelpPages : nullptr};
    bool pressedFirst = false;
    if (!runModalAlert(alert, &pressedFirst)) {
        writeToSystemLog(kUnshownAlertStart + body + kUnshownAlertEnd);
        return kAlertAnswerNotShown;
    }
    return alertAnswer(set, pressedFirst);
}

void* runRequest(void* parameter) {
    AlertRequest* const request = static_cast<AlertRequest*>(parameter);
    const AutoreleasePool pool;
    try {
        request->answer = runAlert(*request);
    } catch (...) {
        // Memory has run out. An exception must not leave a remote call, so the alert counts as not shown.
    }
    return nullptr;
}

}  // namespace

int MacOSXMessageDialog::showAlert(const char* title, const char* body, int buttons, int /*reserved*/) {
    AlertRequest request = {title != nullptr ? title : "", body != nullptr ? body : "", buttons,
                            kAlertAnswerNotShown};
    if (_MPIsFullyInitialized() && MPTaskIsPreemptive(kInvalidID)) {
        MPRemoteCall(runRequest, &request, kMPOwningProcessRemoteContext);
    } else {
        runRequest(&request);
    }
    return request.answer;
}

}  // namespace dovrel
