// PropertiesStringObj: a read cursor over a text in the line grammar. It returns the lines of the text one by
// one as views and does not change the text. Reading a whole text takes time proportional to its size. The
// text must outlive the cursor and the views. Not thread-safe.
#pragma once

#include <cstddef>
#include <string_view>

namespace dovrel {

class PropertiesStringObj {
  public:
    explicit PropertiesStringObj(std::string_view text) : text_(text) {}

    bool atEnd() const { return position_ == text_.size(); }

    /// Returns the number of bytes consumed.
    size_t position() const { return position_; }

    /// Consumes the text up to and including the next line feed, or to the end. Returns the line without the
    /// line feed and without blanks and tabs at its ends. Returns "" at the end of the text.
    std::string_view takeLine();

    /// Consumes all lines before the next line whose first character (after blanks and tabs) is "/". If there
    /// is no such line, consumes the whole rest. Returns the consumed text unchanged, including line feeds.
    std::string_view takeLinesUpToKeyLine();

  private:
    size_t endOfLine(size_t from) const;

    std::string_view text_;
    size_t position_ = 0;
};

}  // namespace dovrel
