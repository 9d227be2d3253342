// ErrorLogFixture: an error log in a system root that belongs to the test, with a fixed time.
#pragma once

#include <unistd.h>

#include <memory>
#include <string>
#include <vector>

#include "client/ErrorLog.h"
#include "client/exceptions/POSException.h"
#include "settings/ConfigFileSystem.h"
#include "tests/client/SessionTest.h"

namespace dovrel::test {

class ErrorLogFixture : public SystemRootTest {
  protected:
    /// The beginning of the file, and the entry that append("Editor", "no driver") adds.
    static constexpr char kHead[] =
        "//POSDLLErrorLog\n//VERSION\nSTR:Dovrel Version n/a\n//ENCODING\nSTR:Bytes of applications, of the "
        "server and of paths are kept as they are, UTF-8 or Mac Roman. The library's own texts are Mac "
        "Roman.\n";
    static constexpr char kEntry[] =
        "\n//TIME\nSTR:2026-11-15T18:19:00Z\n//APPLICATION\nSTR:Editor\n//TYPE\nINT:24\n"
        "//TYPENAME\nSTR:class or driver not found\n//MESSAGE\nSTR:no driver\n";

    ErrorLogFixture() : log_([] { return std::time_t{1794766740}; }) {
        log_.useBundle("/Library/Application Support/Tessilor/pos/Nothing.bundle");
    }

    void append(const char* application, const char* message) const {
        append(FailureReport(std::make_unique<POSClassNotFoundException>(message), application), application);
    }
    void append(const FailureReport& report, const char* application = "Editor") const {
        log_.append(application, report, notes_);
    }

    /// Returns the log's failure entries.
    std::vector<Properties> failures() const {
        std::vector<Properties> sections = ConfigFileSystem::readSections(content(), "TIME");
        sections.erase(sections.begin());
        return sections;
    }

    std::string logPath() const { return root_.path(kErrorLogFile); }
    std::string content() const { return root_.read(kErrorLogFile); }
    bool exists(const std::string& name) const { return access(root_.path(name).c_str(), F_OK) == 0; }

    static int entriesIn(const std::string& text) {
        int count = 0;
        for (size_t at = text.find(kEntry); at != std::string::npos; at = text.find(kEntry, at + 1))
            ++count;
        return count;
    }

    ErrorLog log_;
    FailureNotes notes_;
};

}  // namespace dovrel::test
