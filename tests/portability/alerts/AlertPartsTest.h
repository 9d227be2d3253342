// Fixture for the parts of the alert's window, which are inspected inside the test's own process.
#pragma once

#include <cstdlib>
#include <optional>
#include <string>

#include "tests/portability/alerts/HelperScreen.h"
#include "tests/portability/alerts/HelperTest.h"
#include "tests/portability/alerts/ShownWindow.h"

namespace alerthelper::test {

using portability::AlertRequest;

class AlertPartsTest : public HelperTest {
  protected:
    // Makes accessible names and relations readable without a screen reader.
    AlertPartsTest() { setenv("GTK_A11Y", "test", 1); }

    ShownWindow& show(const AlertRequest& request) {
        if (!screen_) screen_.emplace();
        shown_.emplace(request);
        return *shown_;
    }

    AlertWindow& window() { return shown_->window(); }
    const AlertText& text() { return window().text(); }

    std::optional<HelperScreen> screen_;
    std::optional<ShownWindow> shown_;
};

}  // namespace alerthelper::test
