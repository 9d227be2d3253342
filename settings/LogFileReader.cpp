#include "settings/LogFileReader.h"

#include "client/exceptions/CPPException.h"
#include "settings/LineGrammar.h"
#include "settings/PropertiesStringObj.h"

namespace dovrel {

void LogFileReader::load(std::string& text, const std::string& expectedTitle, Properties& store,
                         bool throughCursor) {
    const std::string found(keyOfKeyLine(PropertiesStringObj(text).takeLine()));
    if (found != expectedTitle) {
        const std::string message =
            "Failed to parse log file, wrong title [" + found + "], expected [" + expectedTitle + "].";
        throw new CPPException(message.c_str());
    }
    // To the store's grammar the title is a key without a value, which counts for nothing.
    store.load(text, throughCursor);
}

std::string LogFileReader::getText(const Properties& store, const std::string& key) {
    return restoreLineFeeds(store.getString(key));
}

}  // namespace dovrel
