// A message for the user that reports no failure.
#pragma once

#include <string>

#include "ui/alerts/MessageDialog.h"

namespace dovrel {

struct InformationalMessage {
    std::string text;  ///< as the server sent it (platform/text/ReadableText.h); empty: nothing to say
};

/// Shows the message with OK alone, under the title for messages; one without a text is not shown.
void showInformationalMessage(MessageDialog& dialog, const InformationalMessage& message);

}  // namespace dovrel
