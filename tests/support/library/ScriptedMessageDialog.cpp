#include "tests/support/library/ScriptedMessageDialog.h"

#include <ostream>

namespace dovrel::test {

std::ostream& operator<<(std::ostream& stream, const ShownAlert& alert) {
    return stream << "[" << alert.title << "] [" << alert.body << "] " << alert.buttons;
}

int ScriptedMessageDialog::showAlert(const char* title, const char* body, int buttons, int /*reserved*/) {
    shown.push_back({title, body, buttons});
    if (onShow) onShow();
    if (answers.empty()) return buttons == 0 ? 12 : 13;
    const int answer = answers.front();
    answers.erase(answers.begin());
    return answer;
}

}  // namespace dovrel::test
