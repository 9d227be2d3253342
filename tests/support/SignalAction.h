// SignalAction: changes the action of a signal while the object exists.
#pragma once

#include <csignal>

namespace dovrel::test {

class SignalAction {
  public:
    /// `handler` may be SIG_IGN or SIG_DFL.
    SignalAction(int signal, void (*handler)(int)) : signal_(signal) {
        struct sigaction action = {};
        action.sa_handler = handler;
        sigaction(signal_, &action, &before_);
    }
    ~SignalAction() { sigaction(signal_, &before_, nullptr); }
    SignalAction(const SignalAction&) = delete;
    SignalAction& operator=(const SignalAction&) = delete;

  private:
    const int signal_;
    struct sigaction before_;
};

}  // namespace dovrel::test
