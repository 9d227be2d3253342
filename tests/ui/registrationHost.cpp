// A host whose registration the server refuses twice, with real alerts. Tells "answer N" for each alert, then
// the result of the registration and how often it was sent.
#include <iostream>

#include "client/ProcessSession.h"
#include "dovrel/pos.h"
#include "platform/SynchronizationFactory.h"
#include "tests/client/ScriptedForwarder.h"
#include "ui/MacOSXMessageDialog.h"

namespace {

class TellingDialog : public dovrel::MacOSXMessageDialog {
  public:
    int showAlert(const char* title, const char* body, int buttons, int reserved) override {
        const int answer = MacOSXMessageDialog::showAlert(title, body, buttons, reserved);
        std::cout << "answer " << answer << std::endl;
        return answer;
    }
};

}  // namespace

int main() {
    dovrel::test::ScriptedForwarder* forwarder = nullptr;
    dovrel::SessionParts parts;
    parts.createForwarder = [&forwarder] {
        auto made = std::make_unique<dovrel::test::ScriptedForwarder>();
        made->answerNext(10, {dovrel::test::error(32, "refused"), dovrel::test::error(32, "refused")});
        forwarder = made.get();
        return made;
    };
    parts.createDialog = [] { return std::make_unique<TellingDialog>(); };
    parts.createLock = dovrel::createMutex;
    dovrel::openSession(parts);

    uint32_t applicationId = 0;
    const uint32_t result = posRegisterApplicationWithClasses("Host", nullptr, 0, nullptr, 0, &applicationId);
    std::cout << std::hex << result << " after " << forwarder->requests(10).size() << std::endl;
    dovrel::closeSession();
}
