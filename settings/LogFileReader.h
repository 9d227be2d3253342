// Reads structured log files as LogFileWriter writes them.
#pragma once

#include <string>

#include "settings/Properties.h"

namespace dovrel {

class LogFileReader {
  public:
    LogFileReader() = delete;

    /// Replaces the content of `store` by the entries of `text`, which must begin with the line of the
    /// expected title. The line's first two characters are not compared. Throws a CPPException with both
    /// titles when they differ; the store and the text are then as they were. Otherwise `throughCursor` is as
    /// for Properties::load.
    static void load(std::string& text, const std::string& expectedTitle, Properties& store,
                     bool throughCursor);

    /// The text of a key with its line feeds back in place. Throws as Properties::getString.
    static std::string getText(const Properties& store, const std::string& key);
};

}  // namespace dovrel
