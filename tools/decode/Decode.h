// dovrel decode: shows the bytes of requests, replies, other blocks and transfer packs.
#pragma once

#include <CLI/CLI.hpp>

namespace dovrel::tools {

/// Adds the subcommand.
void addDecode(CLI::App& app);

}  // namespace dovrel::tools
