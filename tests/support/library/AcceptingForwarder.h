// AcceptingForwarder: simulates a server that accepts every request, and the replies of a server.
#pragma once

#include <string>

#include "tests/support/library/ForwarderDouble.h"

namespace dovrel::test {

// Replies of the server. A message consists of flags and a text. Flags 0 with the text "" mean that
// there is no message.
Answer interfaceVersion(uint32_t version);
Answer registration(uint32_t applicationId, uint32_t flags = 0);
Answer nothing();
Answer object(const std::string& identifier, uint32_t messageFlags = 0, const std::string& text = "");
Answer result(const std::string& bytes, uint32_t messageFlags = 0, const std::string& text = "");
Answer information(const std::string& bytes);
Answer error(uint32_t code, const std::string& text);

/// Applications get the identifiers 1, 2, 3 ..., objects the identifier "object", methods and commands the
/// result "result", and requests for information the block "information".
class AcceptingForwarder : public ForwarderDouble {
  public:
    AcceptingForwarder();

  private:
    uint32_t nextApplicationId_ = 1;
};

}  // namespace dovrel::test
