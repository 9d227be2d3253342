// POSClientException: a text about a failure on the client's side, for handing around as a value of its own.
//
// It stands outside the family of CPPException and is never thrown.
#pragma once

#include <memory>

namespace dovrel {

class POSClientException {
  public:
    /// Copies the text; null or empty leaves the object without one.
    explicit POSClientException(const char* text = nullptr);

    POSClientException(const POSClientException&) = delete;
    POSClientException& operator=(const POSClientException&) = delete;

    virtual ~POSClientException();

    /// Null where there is none. Valid as long as the object.
    const char* getText() const { return text_.get(); }

  private:
    std::unique_ptr<char[]> text_;
};

}  // namespace dovrel
