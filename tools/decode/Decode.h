// dovrel decode: shows the bytes of requests, replies, other blocks and transfer packs.
#pragma once

namespace CLI {
class App;
}

namespace dovrel::tools {

/// Adds the subcommand.
void addDecode(CLI::App& app);

}  // namespace dovrel::tools
