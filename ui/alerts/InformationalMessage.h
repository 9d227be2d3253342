// A message for the user that does not report a failure.
#pragma once

#include <string>

#include "ui/alerts/MessageDialog.h"

namespace dovrel {

struct InformationalMessage {
    std::string text;  ///< the server's bytes (see platform/text/ReadableText.h); empty: no message
};

/// Shows the message with an OK button, under the title for messages. Does nothing if the text is empty.
void showInformationalMessage(MessageDialog& dialog, const InformationalMessage& message);

}  // namespace dovrel
