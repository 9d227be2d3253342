#include "macho/format/ExportTrie.h"

#include <vector>

namespace dovrel::macho {

namespace {

constexpr uint64_t kReexport = 0x08;

struct Node {
    uint64_t offset;
    std::string prefix;
};

}  // namespace

std::map<std::string, uint64_t> exportedSymbols(const ByteReader& trie) {
    std::map<std::string, uint64_t> symbols;
    if (trie.size() == 0) return symbols;
    std::vector<Node> open{{0, ""}};
    // A valid trie has fewer nodes than bytes.
    for (size_t visited = 0; !open.empty(); ++visited) {
        if (visited > trie.size()) throw FormatError("the tree of exports has a loop");
        const Node node = open.back();
        open.pop_back();
        ByteReader reader = trie.part(0, trie.size());
        reader.moveTo(static_cast<size_t>(node.offset));
        const uint64_t size = reader.nextUnsignedLeb();
        const size_t symbol = reader.position();
        if (size > trie.size() - symbol) throw FormatError("a node of the tree of exports is too long");
        if (size > 0) {
            if ((reader.nextUnsignedLeb() & kReexport) != 0) throw FormatError(node.prefix + " is handed on");
            symbols[node.prefix] = reader.nextUnsignedLeb();
        }
        reader.moveTo(symbol + static_cast<size_t>(size));
        for (uint8_t edges = reader.next<uint8_t>(); edges > 0; --edges) {
            std::string name = node.prefix + reader.nextString();
            const uint64_t offset = reader.nextUnsignedLeb();
            if (offset >= trie.size()) throw FormatError("an edge leads out of the tree of exports");
            open.push_back({offset, std::move(name)});
        }
    }
    return symbols;
}

}  // namespace dovrel::macho
