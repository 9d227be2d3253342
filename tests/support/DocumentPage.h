// Reads the examples and tables of a Markdown document for tests. Written for docs/protocol.md.
//
// An example of bytes is a fenced block whose first line is ```hex name=NAME. Each line in it consists of an
// offset (hexadecimal), the bytes at that offset, "|" and a comment.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace dovrel::test {

class DocumentPage {
  public:
    /// The cells of a row, without the blanks around them.
    using Row = std::vector<std::string>;

    /// Reads the page. Fails the test if the page cannot be read or if an example breaks the
    /// format above: an offset that does not match the bytes before it, a name that is used
    /// twice, or a line without a comment.
    explicit DocumentPage(const std::string& path);

    /// Returns the bytes of an example; fails the test if there is no example of that name.
    std::string example(const std::string& name) const;
    std::vector<std::string> exampleNames() const;

    /// Returns the contents of all fenced blocks that begin with ```settings, in the order of the page.
    const std::vector<std::string>& settingsBlocks() const { return settings_; }

    /// Returns true if the page contains the text outside tables and fenced
    /// blocks, however its lines are broken.
    bool says(const std::string& text) const { return prose_.find(text) != std::string::npos; }

    /// Returns the rows of all tables whose header begins with these cells.
    std::vector<Row> rowsUnder(const Row& headerStart) const;

  private:
    void readExample(const std::string& opening, std::istream& page);
    void readSettings(std::istream& page);
    void readTable(const std::string& header, std::istream& page);

    std::map<std::string, std::string> examples_;
    std::vector<std::string> settings_;
    std::string prose_;  ///< each line end is replaced by a blank
    std::vector<std::pair<Row, std::vector<Row>>> tables_;
};

}  // namespace dovrel::test
