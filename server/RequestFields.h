// A request as the server takes it: bytes that have been checked against the table of commands, field by
// field.
//
// Where the library reads answers leniently, the server reads requests strictly, because a host's mistake is
// best found here: a header that is not that of a request, a missing field, a number that is not 4 bytes, an
// identifier that is not 16 and a name without its zero byte are all refused as parameters in the wrong form.
// Fields beyond those of the table are ignored.
#pragma once

#include <string>

#include "InterProcessCommunication/POSCommands.h"
#include "serialization/StructuredByteArrayReader.h"
#include "server/Answer.h"

namespace merrowd {

using dovrel::POSCommand;
using dovrel::POSField;

class RequestFields {
  public:
    /// Checks the whole request. Throws Refusal: code 3 (no valid interface) for a format version or a
    /// command that this server does not know, parameter format for everything else. The bytes must outlive
    /// the object.
    explicit RequestFields(const CPPByteArray& request);

    const POSCommand& command() const { return *command_; }

    // Fields of the command, in the form that the table gives them.
    uint32_t number(const POSField& field) const { return reader_.readUInt32Part(field); }
    Identifier identifier(const POSField& field) const;
    std::string name(const POSField& field) const;
    CPPByteArray data(const POSField& field) const;

  private:
    void parse(const CPPByteArray& request);
    void checkHeader() const;
    void checkField(const POSField& field) const;

    dovrel::StructuredByteArrayReader reader_;
    const POSCommand* command_ = nullptr;
};

}  // namespace merrowd
