#include "tests/support/DocumentPage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <sstream>

namespace dovrel::test {

namespace {

constexpr char kExampleMark[] = "```hex name=";

bool startsWith(const std::string& line, const std::string& mark) {
    return line.compare(0, mark.size(), mark) == 0;
}

std::string withoutBlanks(const std::string& cell) {
    const size_t first = cell.find_first_not_of(' ');
    if (first == std::string::npos) return "";
    return cell.substr(first, cell.find_last_not_of(' ') - first + 1);
}

// Returns the cells between the bars of a line such as "| a | b |".
DocumentPage::Row splitCells(const std::string& line) {
    DocumentPage::Row cells;
    for (size_t from = 1, bar; (bar = line.find('|', from)) != std::string::npos; from = bar + 1) {
        cells.push_back(withoutBlanks(line.substr(from, bar - from)));
    }
    return cells;
}

}  // namespace

DocumentPage::DocumentPage(const std::string& path) {
    std::ifstream page(path);
    EXPECT_TRUE(page.is_open()) << path;
    for (std::string line; std::getline(page, line);) {
        if (startsWith(line, kExampleMark)) {
            readExample(line, page);
        } else if (line == "```settings") {
            readSettings(page);
        } else if (startsWith(line, "|")) {
            readTable(line, page);
        } else {
            prose_ += line + " ";
        }
    }
}

void DocumentPage::readExample(const std::string& opening, std::istream& page) {
    const std::string name = opening.substr(sizeof kExampleMark - 1);
    EXPECT_EQ(examples_.count(name), 0u) << name;
    std::string& bytes = examples_[name];
    for (std::string line; std::getline(page, line) && line != "```";) {
        const size_t bar = line.find(" | ") != std::string::npos ? line.find(" | ") : line.find("| ");
        EXPECT_NE(bar, std::string::npos) << name << ": no comment in: " << line;
        std::istringstream digits(line.substr(0, bar));
        size_t offset = 0;
        digits >> std::hex >> offset;
        EXPECT_EQ(offset, bytes.size()) << name << ": the offset is wrong in: " << line;
        for (unsigned byte = 0; digits >> std::hex >> byte;)
            bytes += static_cast<char>(byte);
    }
}

void DocumentPage::readSettings(std::istream& page) {
    std::string& block = settings_.emplace_back();
    for (std::string line; std::getline(page, line) && line != "```";)
        block += line + "\n";
}

void DocumentPage::readTable(const std::string& header, std::istream& page) {
    tables_.emplace_back(splitCells(header), std::vector<Row>());
    std::string line;
    std::getline(page, line);
    EXPECT_TRUE(startsWith(line, "|---")) << line;
    while (std::getline(page, line) && startsWith(line, "|"))
        tables_.back().second.push_back(splitCells(line));
}

std::string DocumentPage::example(const std::string& name) const {
    const auto found = examples_.find(name);
    if (found != examples_.end()) return found->second;
    ADD_FAILURE() << "the page has no example " << name;
    return "";
}

std::vector<std::string> DocumentPage::exampleNames() const {
    std::vector<std::string> names;
    for (const auto& example : examples_)
        names.push_back(example.first);
    return names;
}

std::vector<DocumentPage::Row> DocumentPage::rowsUnder(const Row& headerStart) const {
    std::vector<Row> rows;
    for (const auto& table : tables_) {
        const Row& header = table.first;
        const bool fits = header.size() >= headerStart.size() &&
                          std::equal(headerStart.begin(), headerStart.end(), header.begin());
        if (fits) rows.insert(rows.end(), table.second.begin(), table.second.end());
    }
    return rows;
}

}  // namespace dovrel::test
