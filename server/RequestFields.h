// RequestFields: the fields of a request, checked against the table of commands.
//
// The library reads replies leniently. The server checks requests strictly, because this is the best place to
// find a host's mistake. It refuses each of the following (parameter format):
//
// - a header that is not a request's header,
// - a missing field,
// - a number that is not 4 bytes, or an identifier that is not 16 bytes,
// - a name that does not end with its only zero byte.
//
// Fields that are not in the table are ignored.
#pragma once

#include <string>

#include "InterProcessCommunication/POSCommands.h"
#include "serialization/StructuredByteArrayReader.h"
#include "server/MethodResult.h"

namespace merrowd {

using dovrel::POSCommand;
using dovrel::POSField;

class RequestFields {
  public:
    /// Checks the whole request. Throws Refusal with code 3 (no valid interface) if the format
    /// version or the command is unknown, and with "parameter format" for every other mistake. The
    /// bytes must outlive the object.
    explicit RequestFields(CPPByteArray& request);

    const POSCommand& command() const { return *command_; }

    // The fields of the command. Each function is for fields of one form in the table.
    uint32_t number(const POSField& field) const { return reader_.viewNumber(field); }
    Identifier identifier(const POSField& field) const;
    std::string name(const POSField& field) const;
    CPPByteArray data(const POSField& field) const;

    /// Returns what data() returns, but may take the memory of the request for it. Must be the last read.
    CPPByteArray takeData(const POSField& field);

  private:
    void parse(const CPPByteArray& request);
    void checkHeader() const;
    void checkField(const POSField& field) const;

    CPPByteArray& request_;
    dovrel::StructuredByteArrayReader reader_;
    const POSCommand* command_ = nullptr;
};

}  // namespace merrowd
