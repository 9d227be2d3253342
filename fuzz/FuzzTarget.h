// The parts of every fuzz target: the entry point, and a check that ends the program
// if its condition is false.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

// Tests one input and returns 0. Is called any number of times in one process.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

#define FUZZ_CHECK(condition)                                                                   \
    do {                                                                                        \
        if (!(condition)) {                                                                     \
            std::fprintf(stderr, "%s:%d: does not hold: %s\n", __FILE__, __LINE__, #condition); \
            std::abort();                                                                       \
        }                                                                                       \
    } while (false)
