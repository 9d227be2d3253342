// CPPException: the base class of every failure inside the library, and the class of failures that have no
// class of their own.
//
// Failures are allocated with new and thrown by pointer. The catching code takes ownership in its first line:
//
//     catch (CPPException* caught) {
//         std::unique_ptr<CPPException> failure(caught);
//
// The object owns copies of its texts. An object may be used by one thread at a time. If memory runs out
// while a text is copied, std::bad_alloc is thrown.
#pragma once

#include <cstdint>
#include <memory>

#include "client/exceptions/ExceptionTypeCodes.h"

namespace dovrel {

/// Returns a copy of the NUL-terminated text, or null if the text is null or empty. Throws std::bad_alloc.
std::unique_ptr<char[]> copyText(const char* text);

class CPPException {
  public:
    /// The detail text of every new exception until setDetail replaces it.
    static constexpr char kDefaultDetail[] = "???";

    /// Creates an exception without a message, with the default detail and code 0.
    CPPException();

    /// Creates an exception with the default detail. If the message is null or empty, the exception
    /// has no message.
    explicit CPPException(const char* message, int64_t code = 0);

    /// Copies both texts and the code.
    CPPException(const CPPException& other);
    CPPException& operator=(const CPPException& other);

    /// The order of the virtual functions is fixed: the destructors, then getTypeCode.
    virtual ~CPPException();

    /// Returns the fixed number of the class, from ExceptionTypeCodes.h.
    virtual uint32_t getTypeCode() const;

    /// Returns the message, or null if there is none. Valid until the message is replaced or the
    /// exception is deleted.
    const char* getMessage() const { return message_.get(); }

    /// Returns the detail; null only after setDetail(""). Valid until the detail is replaced or the
    /// exception is deleted.
    const char* getDetail() const { return detail_.get(); }

    int64_t getCode() const { return code_; }

    /// Replace the text. Null changes nothing; an empty text sets the text to null.
    void setMessage(const char* message);
    void setDetail(const char* detail);

    void setCode(int64_t code) { code_ = code; }

  private:
    std::unique_ptr<char[]> message_;
    std::unique_ptr<char[]> detail_;
    int64_t code_ = 0;
};

}  // namespace dovrel
