// Changes the environment in tests.
#pragma once

#include <stdlib.h>

#include <optional>
#include <string>

/// Sets an environment variable, or removes it (null), while the object exists.
class VariableChange {
  public:
    VariableChange(const char* name, const char* value) : name_(name) {
        if (const char* before = getenv(name)) {
            before_ = before;
        }
        set(value);
    }
    ~VariableChange() { set(before_ ? before_->c_str() : nullptr); }
    VariableChange(const VariableChange&) = delete;
    VariableChange& operator=(const VariableChange&) = delete;

  private:
    void set(const char* value) const {
        if (value == nullptr) {
            unsetenv(name_.c_str());
        } else {
            setenv(name_.c_str(), value, 1);
        }
    }

    const std::string name_;
    std::optional<std::string> before_;
};
