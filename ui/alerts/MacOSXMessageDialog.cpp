#include "ui/alerts/MacOSXMessageDialog.h"

#include <CoreServices/CoreServices.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <new>
#include <string>

#include "client/exceptions/CPPException.h"
#include "platform/AutoreleasePool.h"
#include "platform/text/ReadableText.h"
#include "platform/text/TextConversions.h"
#include "platform/trace/SystemLog.h"
#include "settings/MultiLanguageSupport.h"
#include "settings/TextKeys.h"
#include "ui/alerts/HelpPages.h"
#include "ui/alerts/ModalAlert.h"
#include "ui/information/Component.h"

namespace dovrel {

namespace {

struct AlertRequest {
    const char* title;
    const char* body;
    int buttons;
    int answer;
};

struct ButtonSet {
    const char* firstKey;   ///< key of the text on the first button
    const char* secondKey;  ///< key of the text on the second button; null if there is only one button
    int firstAnswer;        ///< the AlertAnswer when the user presses the first button
};

/// Returns the buttons for a value of AlertButtons. For every other number it returns OK alone.
ButtonSet buttonSet(int buttons) {
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
    } catch (CPPException* caught) {
        const std::unique_ptr<CPPException> failure(caught);  // the alert stays on the screen, as below
    } catch (...) {
        // Memory has run out. The alert stays on the screen.
    }
}

/// Returns the text for the system log, which takes only UTF-8. Where shownText fails, every byte outside ASCII
/// becomes a question mark.
std::string loggedText(const char* text) {
    try {
        return shownText(text);
    } catch (CPPException* caught) {
        const std::unique_ptr<CPPException> failure(caught);
    } catch (const std::bad_alloc&) {
        // The same text in ASCII needs less memory.
    }
    std::string ascii = text;
    std::replace_if(
        ascii.begin(), ascii.end(), [](char c) { return static_cast<uint8_t>(c) >= 0x80; }, '?');
    return withLineFeedsOnly(ascii);
}

// The system log is the only place left for the text. Without memory even that is lost.
void writeUnshown(const char* body) noexcept {
    try {
        writeToSystemLog(std::string(kUnshownAlertStart) + loggedText(body) + kUnshownAlertEnd);
    } catch (const std::bad_alloc&) {
    }
}

int runAlert(const AlertRequest& request) {
    const ButtonSet set = buttonSet(request.buttons);
    const std::string title = shownText(request.title);
    const std::string body = shownText(request.body);
    const std::string first = captionText(set.firstKey);
    const std::string second = set.secondKey != nullptr ? captionText(set.secondKey) : std::string();
    const ModalAlert alert = {title.c_str(), body.c_str(), first.c_str(),
                              set.secondKey != nullptr ? second.c_str() : nullptr,
                              isManagementApplication() ? openHelpPages : nullptr};
    bool pressedFirst = false;
    if (!runModalAlert(alert, &pressedFirst)) {
        writeUnshown(body.c_str());
        return kAlertAnswerNotShown;
    }
    return pressedFirst ? set.firstAnswer : int{kAlertAnswerCancel};
}

void* runRequest(void* parameter) {
    AlertRequest* const request = static_cast<AlertRequest*>(parameter);
    const AutoreleasePool pool;
    try {
        request->answer = runAlert(*request);
    } catch (CPPException* caught) {
        const std::unique_ptr<CPPException> failure(caught);
        writeUnshown(request->body);
    } catch (...) {
        // An exception must not leave a remote call, so the alert counts as not shown.
        writeUnshown(request->body);
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
