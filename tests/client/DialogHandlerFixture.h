// DialogHandlerFixture: the frame of the operations over a scripted forwarder and a scripted alert.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "client/POSAccessUIDialogHandler.h"
#include "client/exceptions/POSException.h"
#include "tests/client/SessionTest.h"

namespace dovrel::test {

class DialogHandlerFixture : public SystemRootTest {
  protected:
    DialogHandlerFixture() : handler_(newDialog()) {
        client_.setForwarder(&forwarder_);
        handler_.setClient(&client_);
    }

    std::unique_ptr<MessageDialog> newDialog() {
        auto dialog = std::make_unique<ScriptedMessageDialog>();
        dialog_ = dialog.get();
        return dialog;
    }

    void readOptions(std::vector<uint16_t> options) {
        handler_.readOptions(options.data(), static_cast<uint32_t>(options.size() * sizeof(uint16_t)));
    }

    uint32_t registered(const char* name) {
        handler_.prepareRegistration(name);
        const auto result = client_.registerApplication(name, {}, CPPByteArray());
        EXPECT_EQ(result.outcome, POSOutcome::kDone);
        handler_.completeRegistration(result.value);
        return result.value;
    }

    /// Runs work that throws in its first `failures` runs, and counts the runs.
    bool runFailing(int failures, const std::function<CPPException*()>& make) {
        return handler_.run(0, [&] {
            if (++runs_ <= failures) throw make();
            return POSOutcome::kDone;
        });
    }
    bool registerFailing(int failures, const std::function<CPPException*()>& make) {
        return handler_.runRegistration("Editor", [&] {
            if (++runs_ <= failures) throw make();
            return POSOutcome::kDone;
        });
    }

    static CPPException* refusal() { return new POSRegistrationException("refused"); }
    static CPPException* otherFailure() { return new POSMethodExecutionException("broken"); }

    const ShownAlert refusalAlert_{kErrorTitle, reportBody("Editor", "refused", "Register."), kRetryCancel};
    const ShownAlert attentionAlert_{kErrorTitle, kAttention, kRetryCancel};

    AcceptingForwarder forwarder_;
    ScriptedMessageDialog* dialog_ = nullptr;
    POSAccessClient client_;
    POSAccessUIDialogHandler handler_;
    int runs_ = 0;
};

}  // namespace dovrel::test
