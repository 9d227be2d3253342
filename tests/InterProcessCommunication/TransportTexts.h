// TransportTexts: the texts that the transport uses, in an installation that belongs to the test.
#pragma once

#include "tests/support/InstalledTexts.h"

namespace dovrel::test {

class TransportTexts {
  public:
    static constexpr char kNoValidInterface[] = "Another interface is needed.";
    static constexpr char kWrongIdentifier[] = "This is no identifier.";
    static constexpr char kCommandTooLong[] = "This is no command.";

    /// Loads the texts.
    TransportTexts();

  private:
    InstalledTexts installation_;
};

}  // namespace dovrel::test
