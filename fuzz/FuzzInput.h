// Takes the input of a fuzz target apart. Behind its end are zeros.
#pragma once

#include <cstddef>
#include <cstdint>

class FuzzInput {
  public:
    FuzzInput(const uint8_t* data, size_t size) : data_(data), size_(size) {}
    bool atEnd() const { return size_ == 0; }
    uint8_t takeByte() {
        if (size_ == 0) return 0;
        --size_;
        return *data_++;
    }
    uint32_t takeNumber() {
        uint32_t number = 0;
        for (int i = 0; i < 4; ++i)
            number = number << 8 | takeByte();
        return number;
    }

  private:
    const uint8_t* data_;
    size_t size_;
};
