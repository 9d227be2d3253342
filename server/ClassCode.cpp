#include "server/ClassCode.h"

#include <exception>
#include <memory>

#include "client/exceptions/CPPException.h"

namespace merrowd {

using dovrel::CPPException;

namespace {

// Returns the message of the exception that is being handled.
std::string message() {
    try {
        throw;
    } catch (const std::exception& exception) {
        return exception.what();
    } catch (CPPException* caught) {
        const std::unique_ptr<CPPException> failure(caught);
        const char* const text = failure->getMessage();
        return text != nullptr ? text : "a failure without a message";
    } catch (...) {
        return "it is not of a known type";
    }
}

}  // namespace

void throwEscapedException(uint32_t code, const std::string& operation) {
    throw EscapedException{{code, operation + " let an exception out: " + message()}};
}

}  // namespace merrowd
