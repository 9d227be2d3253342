// An alert without a window: it records what it should show and returns buttons by a script.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "ui/alerts/MessageDialog.h"

namespace dovrel::test {

struct ShownAlert {
    std::string title;
    std::string body;
    int buttons;

    friend bool operator==(const ShownAlert& left, const ShownAlert& right) {
        return left.title == right.title && left.body == right.body && left.buttons == right.buttons;
    }
    friend std::ostream& operator<<(std::ostream& stream, const ShownAlert& alert);
};

class ScriptedMessageDialog : public MessageDialog {
  public:
    using MessageDialog::showAlert;
    int showAlert(const char* title, const char* body, int buttons, int reserved) override;

    /// The buttons that are pressed in the next alerts. After the last one, the first button is pressed.
    std::vector<int> answers;
    std::vector<ShownAlert> shown;
    std::function<void()> onShow;
};

}  // namespace dovrel::test
