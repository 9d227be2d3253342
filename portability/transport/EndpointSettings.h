// The environment variables that determine where endpoints are. Private to the layer.
#pragma once

#include <cstddef>
#include <string_view>

namespace portability {

/// Both are "" if they are unset, and in a program that has another user's rights. Valid until the
/// environment changes.
struct EndpointSettings {
    const char* systemRoot = "";     // POS_SYSTEM_ROOT
    const char* runtimeFolder = "";  // XDG_RUNTIME_DIR
};

/// Reads the variables, for callers that do so at each exchange. It searches the environment only after entries
/// were added, removed or replaced, because a search costs as much as a tenth of all else that a sender does. Not
/// thread-safe, and like getenv() it must not run while another thread changes the environment.
class EndpointSettingsReader {
  public:
    /// Returns the current values. A change of the environment by setenv(), putenv(), unsetenv() or clearenv()
    /// takes effect at once.
    EndpointSettings read();

  private:
    // A variable and its entry in the environment. A new value is in another entry, or in the same one.
    class Variable {
      public:
        explicit Variable(std::string_view nameAndSign) : nameAndSign_(nameAndSign) {}

        bool matches(const char* entry) const;
        void setEntry(char** entry) { entry_ = entry; }
        bool hasEntry() const { return entry_ != nullptr; }
        bool isUpToDate() const { return !hasEntry() || (*entry_ != nullptr && matches(*entry_)); }
        const char* value() const { return hasEntry() ? *entry_ + nameAndSign_.size() : ""; }

      private:
        std::string_view nameAndSign_;
        char** entry_ = nullptr;  // null: unset
    };

    bool isUpToDate() const;
    void search();

    char** environment_ = nullptr;
    size_t count_ = 0;            // entries of the environment at the last search
    const char* last_ = nullptr;  // the last of them
    Variable systemRoot_{"POS_SYSTEM_ROOT="};
    Variable runtimeFolder_{"XDG_RUNTIME_DIR="};
};

}  // namespace portability
