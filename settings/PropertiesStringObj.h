// A read cursor over a text in the line grammar. It hands out the text's lines one after the other as views
// and leaves the text as it is; reading a whole text takes time in proportion to its size. The text must
// outlive the cursor and the views. One thread at a time.
#pragma once

#include <cstddef>
#include <string_view>

namespace dovrel {

class PropertiesStringObj {
  public:
    explicit PropertiesStringObj(std::string_view text) : text_(text) {}

    bool atEnd() const { return position_ == text_.size(); }

    /// How much of the text is consumed.
    size_t position() const { return position_; }

    /// Consumes the text up to the next line feed, or to the end, and the line feed with it. The result comes
    /// without the line feed and without the blanks and tabs at both ends of the line; empty at the end of
    /// the text.
    std::string_view takeLine();

    /// Consumes the lines before the next one whose first character (after blanks and tabs) is "/", or all
    /// that are left. The result is the text as it stands, line feeds included.
    std::string_view takeLinesUpToKeyLine();

  private:
    size_t endOfLine(size_t from) const;

    std::string_view text_;
    size_t position_ = 0;
};

}  // namespace dovrel
