// Reads structured log files that LogFileWriter has written.
#pragma once

#include <string>

#include "settings/Properties.h"

namespace dovrel {

class LogFileReader {
  public:
    LogFileReader() = delete;

    /// Replaces the content of `store` by the entries of `text`. The first line of `text` must be
    /// the expected title; its first two characters are not compared. If the titles differ, throws
    /// a CPPException with both titles and leaves the store and the text unchanged. `throughCursor`
    /// is as for Properties::load. If it is false, the title line is removed from `text` first.
    static void load(std::string& text, const std::string& expectedTitle, Properties& store,
                     bool throughCursor);

    /// Returns the text of a key with its line feeds restored. Throws as Properties::getString does.
    static std::string getText(const Properties& store, const std::string& key);
};

}  // namespace dovrel
