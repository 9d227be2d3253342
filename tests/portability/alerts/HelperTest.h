// Fixture of the alert helper's tests. It removes the effect of the developer's own desktop settings.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <string>

#include "portability/alerts/AlertMessages.h"
#include "tests/support/ShippedTexts.h"
#include "tests/support/TemporaryFolder.h"

namespace alerthelper::test {

class HelperTest : public testing::Test {
  protected:
    HelperTest() {
        for (const char* variable :
             {"AT_SPI_BUS_ADDRESS", "DBUS_SESSION_BUS_ADDRESS", "DISPLAY", "GDK_DEBUG", "GDK_SCALE",
              "GSK_RENDERER", "GTK_A11Y", "GTK_THEME", "LANGUAGE", "LC_ALL", "LC_MESSAGES", "WAYLAND_DISPLAY",
              "XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME"})
            unsetenv(variable);
        setenv("GDK_BACKEND", "x11", 1);
        setenv("HOME", folder_.path().c_str(), 1);
        setenv("XDG_RUNTIME_DIR", folder_.path().c_str(), 1);
        setenv("LANG", "C.UTF-8", 1);
        // Shows warnings of the libraries, which are hidden by default, but not their other messages.
        setenv("G_MESSAGES_DEBUG", "none", 1);
    }

    /// Returns the alert that reports a failed registration, in a language of the shipped texts.
    static portability::AlertRequest requestIn(const std::string& language) {
        const dovrel::test::ShippedTexts texts(SHIPPED_TEXTS, language);
        std::string body = texts.failureBody("Halcon", texts.text("DLL_MSG_MERROWD_IS_MISSING_MACOSX"),
                                             "DLL_ERROR_POS_REGISTRATION_EXCEPTION");
        std::replace(body.begin(), body.end(), '\r', '\n');
        return {texts.text("DLL_ERROR_DIALOG_TITLE"),
                body,
                {texts.text("GENERAL_BUTTON_RETRY"), texts.text("GENERAL_BUTTON_CANCEL")},
                true,
                getpid()};
    }

    static portability::AlertRequest simpleRequest(const std::vector<std::string>& buttons) {
        return {"Title", "Body", buttons, false, getpid()};
    }

    dovrel::test::TemporaryFolder folder_;
};

}  // namespace alerthelper::test
