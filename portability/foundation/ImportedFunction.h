// Where another library of this process keeps the address of a function that it calls. Private to the layer.
#pragma once

namespace portability {

class ImportedFunction {
  public:
    /// Looks for the import `name` of the library that `address` lies in. Where there is none, the object does
    /// nothing.
    ImportedFunction(const void* address, const char* name) noexcept;

    /// Lets that library, and no other, call `replacement` instead, until restore(). Calls that are under way on
    /// other threads reach one of the two. Not to be used by two threads at once.
    void redirect(void* replacement) noexcept;
    void restore() noexcept;

  private:
    void write(void* function) noexcept;

    void** place_ = nullptr;
    bool isProtected_ = false;
    void* original_ = nullptr;
};

}  // namespace portability
