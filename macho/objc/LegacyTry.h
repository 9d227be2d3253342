// @try in 32-bit images. A handler is a setjmp, whose buffer the runtime keeps while the block runs.
//
// Exceptions of this system's runtime unwind the stack instead. Therefore a method that is called in such a
// block has a special return address. Unwinding ends there and jumps to the handler. In such a block, only
// methods may throw.
#pragma once

#include <cstdint>

extern "C" {

/// Replaces macOS's setjmp for an image. Fills the buffer and returns 0. Returns 1 if the handler must run.
int macho_setjmp(void* buffer);
}

namespace dovrel::macho {

/// Called at the start of a block. `buffer` is the argument of its setjmp. Applies to the calling thread.
void enterTry(void* buffer);

/// Called at the end of a block that threw no exception.
void leaveTry(void* buffer);

}  // namespace dovrel::macho
