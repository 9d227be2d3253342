// TransportTexts: the texts that the transport asks for, in an installation of the test's own.
#pragma once

#include "tests/settings/InstalledTexts.h"

namespace dovrel::test {

class TransportTexts {
  public:
    static constexpr char kNoValidInterface[] = "Another interface is needed.";
    static constexpr char kWrongIdentifier[] = "This is no identifier.";
    static constexpr char kCommandTooLong[] = "This is no command.";

    /// Loads them.
    TransportTexts();

  private:
    InstalledTexts installation_;
};

}  // namespace dovrel::test
