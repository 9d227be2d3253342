// ImportedFunction: the place where another library of this process stores the address of a function that it
// imports. Private to the layer.
#pragma once

namespace portability {

class ImportedFunction {
  public:
    /// Finds the import `name` of the library that contains `address`. If there is none, all functions of
    /// the object do nothing.
    ImportedFunction(const void* address, const char* name) noexcept;

    /// Makes only that library call `replacement` instead, until restore(). A call on another thread at this
    /// moment reaches either function. Must not be used by two threads at once.
    void redirect(void* replacement) noexcept;
    void restore() noexcept;

  private:
    void write(void* function) noexcept;

    void** place_ = nullptr;
    bool isProtected_ = false;
    void* original_ = nullptr;
};

}  // namespace portability
