#include "tests/support/LibraryImage.h"

#include <dlfcn.h>

#include <stdexcept>

namespace dovrel::test {

LibraryImage::LibraryImage(const std::string& executable)
    : handle_(dlopen(executable.c_str(), RTLD_NOW | RTLD_LOCAL)) {
    if (handle_ == nullptr) throw std::runtime_error(dlerror());
}

LibraryImage::~LibraryImage() {
    dlclose(handle_);
}

void* LibraryImage::function(const char* name) const {
    return dlsym(handle_, name);
}

}  // namespace dovrel::test
