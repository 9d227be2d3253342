// CPPException: the root of every failure inside the library, and itself the failure without a kind of its
// own.
//
// Failures are allocated with new and thrown by pointer; whoever catches one owns it and deletes it:
//
//     catch (CPPException* caught) {
//         std::unique_ptr<CPPException> failure(caught);
//
// The texts are copies owned by the object. An object belongs to one thread at a time. Running out of memory
// while a text is copied is std::bad_alloc.
#pragma once

#include <cstdint>
#include <memory>

#include "client/exceptions/ExceptionTypeCodes.h"

namespace dovrel {

class CPPException {
  public:
    /// The detail text of every new exception, until setDetail replaces it.
    static constexpr char kDefaultDetail[] = "???";

    /// No message, the default detail, code 0.
    CPPException();

    /// The default detail. A null or empty message leaves the exception without one.
    explicit CPPException(const char* message, int64_t code = 0);

    /// Copies both texts and the code.
    CPPException(const CPPException& other);
    CPPException& operator=(const CPPException& other);

    /// The order of the virtual operations is fixed: the destructors, then the type code.
    virtual ~CPPException();

    /// One fixed number per class, from ExceptionTypeCodes.h.
    virtual uint32_t getTypeCode() const;

    /// Null where there is no message. Valid until the message is replaced or the exception deleted.
    const char* getMessage() const { return message_.get(); }

    /// Null only after setDetail(""). Valid until the detail is replaced or the exception deleted.
    const char* getDetail() const { return detail_.get(); }

    int64_t getCode() const { return code_; }

    /// Null changes nothing, an empty text leaves null behind.
    void setMessage(const char* message);
    void setDetail(const char* detail);

    void setCode(int64_t code) { code_ = code; }

  private:
    std::unique_ptr<char[]> message_;
    std::unique_ptr<char[]> detail_;
    int64_t code_ = 0;
};

}  // namespace dovrel
