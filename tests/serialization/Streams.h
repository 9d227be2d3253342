// Streams with unusual properties.
#pragma once

#include <cstddef>
#include <istream>
#include <sstream>
#include <stdexcept>
#include <streambuf>
#include <string>
#include <utility>

namespace dovrel::test {

/// Returns a stream of these words that ">>" has read past its end: eofbit and failbit are set.
inline std::istringstream readPastItsEnd(const std::string& words) {
    std::istringstream stream(words);
    for (std::string word; stream >> word;) {
    }
    return stream;
}

/// Delivers a text from start to end and cannot be positioned, like a pipe.
class PipeBuffer : public std::streambuf {
  public:
    explicit PipeBuffer(std::string text) : text_(std::move(text)) {
        setg(text_.data(), text_.data(), text_.data() + text_.size());
    }

  private:
    std::string text_;
};

/// A text whose length can be determined, but reading it throws
/// std::runtime_error after the first characters.
class BrokenBuffer : public std::streambuf {
  public:
    BrokenBuffer(std::string text, std::size_t readable) : text_(std::move(text)), readable_(readable) {
        setg(text_.data(), text_.data(), text_.data() + readable_);
    }

  protected:
    int_type underflow() override { throw std::runtime_error("the medium is broken"); }

    // Only the start and the end can be sought.
    pos_type seekoff(off_type, std::ios::seekdir direction, std::ios::openmode) override {
        setg(text_.data(), text_.data(), text_.data() + readable_);
        if (direction != std::ios::cur) isAtEnd_ = direction == std::ios::end;
        return pos_type(isAtEnd_ ? static_cast<off_type>(text_.size()) : 0);
    }

  private:
    std::string text_;
    std::size_t readable_;
    bool isAtEnd_ = false;
};

}  // namespace dovrel::test
