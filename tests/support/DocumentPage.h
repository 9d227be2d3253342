// A document as tests read it: its examples and its tables. Made for docs/protocol.md, of use for others.
//
// An example of bytes is a fenced block whose first line is ```hex name=NAME. Each of its lines is an offset
// (hexadecimal), the bytes from there on, "|" and a comment.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace dovrel::test {

class DocumentPage {
  public:
    /// The cells of a row, without the blanks around them.
    using Row = std::vector<std::string>;

    /// Reads the page; fails the test where it cannot be read or an example does not keep to the form above:
    /// offsets that do not follow from the bytes, a name that is used twice, a line without a comment.
    explicit DocumentPage(const std::string& path);

    /// The bytes of an example; fails the test where there is none of that name.
    std::string example(const std::string& name) const;
    std::vector<std::string> exampleNames() const;

    /// The contents of all fenced blocks that begin with ```settings, in their order.
    const std::vector<std::string>& settingsBlocks() const { return settings_; }

    /// Whether the text stands in the page outside tables and fenced blocks, however its lines are broken.
    bool says(const std::string& text) const { return prose_.find(text) != std::string::npos; }

    /// The rows of all tables whose header begins with these cells.
    std::vector<Row> rowsUnder(const Row& headerStart) const;

  private:
    void readExample(const std::string& opening, std::istream& page);
    void readSettings(std::istream& page);
    void readTable(const std::string& header, std::istream& page);

    std::map<std::string, std::string> examples_;
    std::vector<std::string> settings_;
    std::string prose_;  ///< a blank where a line ends
    std::vector<std::pair<Row, std::vector<Row>>> tables_;
};

}  // namespace dovrel::test
