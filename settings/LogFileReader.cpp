#include "settings/LogFileReader.h"

#include "client/exceptions/CPPException.h"
#include "settings/LineGrammar.h"
#include "settings/PropertiesStringObj.h"

namespace dovrel {

void LogFileReader::load(std::string& text, const std::string& expectedTitle, Properties& store,
                         bool throughCursor) {
    PropertiesStringObj cursor(text);
    const std::string found(keyFromLine(cursor.takeLine()));
    if (found != expectedTitle) {
        const std::string message =
            "Failed to parse log file, wrong title [" + found + "], expected [" + expectedTitle + "].";
        throw new CPPException(message.c_str());
    }
    if (throughCursor) return store.load(cursor);
    text.erase(0, cursor.position());
    store.load(text, false);
}

std::string LogFileReader::getText(const Properties& store, const std::string& key) {
    return restoreLineFeeds(store.getString(key));
}

}  // namespace dovrel
