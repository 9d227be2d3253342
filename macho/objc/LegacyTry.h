// @try in 32-bit images: a handler is a setjmp whose buffer is handed to the runtime while the block runs.
// Exceptions of this system's runtime unwind the stack instead; so methods that are called in such a block
// are called in a way that unwinding ends behind them, and the handler is jumped to. In such
// a block only methods may throw.
#pragma once

#include <cstdint>

extern "C" {

/// What macOS's setjmp is for an image: fills the buffer and answers 0; answers 1 when the handler is to run.
int macho_setjmp(void* buffer);
}

namespace dovrel::macho {

/// The runtime's call at the beginning of a block; the buffer is that of its setjmp. Of the thread.
void enterTry(void* buffer);

/// The runtime's call at the end of a block that threw nothing.
void leaveTry(void* buffer);

}  // namespace dovrel::macho
