// Finds the slot of a virtual function in the virtual table of its class, so that tests can check the order of
// the functions that the headers fix.
//
// Both systems use the Itanium C++ ABI, for both widths. It represents a pointer to a virtual member function as
// one plus the byte offset of the function's slot. A destructor has two slots, but C++ has no pointers to
// destructors.
#pragma once

#include <cstddef>
#include <cstring>

namespace dovrel::test {

template <class Function>
size_t virtualSlot(Function member) {
    size_t word = 0;
    static_assert(sizeof member == 2 * sizeof word, "not a pointer to a member function");
    std::memcpy(&word, &member, sizeof word);
    return (word - 1) / sizeof(void*);
}

// The number of slots of a class equals the slot of the first virtual function that a derived class adds.
template <class Class>
class VirtualSlots : public Class {
  public:
    static size_t count() { return virtualSlot(&VirtualSlots::firstOfDerived); }
    virtual void firstOfDerived() {}
};

}  // namespace dovrel::test
