// POSClientException: a text about a failure on the client's side, passed on as an object.
//
// It is not derived from CPPException and is never thrown.
#pragma once

#include <memory>

namespace dovrel {

class POSClientException {
  public:
    /// Copies the text. If it is null or empty, the object has no text. Throws std::bad_alloc.
    explicit POSClientException(const char* text = nullptr);

    POSClientException(const POSClientException&) = delete;
    POSClientException& operator=(const POSClientException&) = delete;

    virtual ~POSClientException();

    /// Returns the text, or null if there is none. Valid until the object is destroyed.
    const char* getText() const { return text_.get(); }

  private:
    std::unique_ptr<char[]> text_;
};

}  // namespace dovrel
