// The findings of the doctor's checks.
#pragma once

#include <string>
#include <vector>

namespace dovrel::tools {

enum class Severity {
    ok,
    note,     ///< worth knowing, and not wrong
    warning,  ///< calls work, but something is not as it should be
    trouble   ///< calls fail, or failures are not shown
};

struct CheckResult {
    Severity severity = Severity::ok;
    std::string subject;   ///< what was examined, for example "server"
    std::string finding;   ///< what was found
    std::string whatToDo;  ///< one sentence or more; "" if there is nothing to do
};

/// Returns the number with its noun: "1 entry", "2 entries".
inline std::string countText(size_t count, const std::string& singular, const std::string& plural) {
    return std::to_string(count) + " " + (count == 1 ? singular : plural);
}

/// The results in the order in which they were found.
class CheckResults {
  public:
    void addOk(const std::string& subject, const std::string& finding) {
        results_.push_back({Severity::ok, subject, finding, ""});
    }
    void addNote(const std::string& subject, const std::string& finding, const std::string& whatToDo = "") {
        results_.push_back({Severity::note, subject, finding, whatToDo});
    }
    void addWarning(const std::string& subject, const std::string& finding, const std::string& whatToDo) {
        results_.push_back({Severity::warning, subject, finding, whatToDo});
    }
    void addTrouble(const std::string& subject, const std::string& finding, const std::string& whatToDo) {
        results_.push_back({Severity::trouble, subject, finding, whatToDo});
    }

    const std::vector<CheckResult>& all() const { return results_; }

    size_t count(Severity severity) const {
        size_t number = 0;
        for (const CheckResult& result : results_)
            number += result.severity == severity ? 1 : 0;
        return number;
    }

  private:
    std::vector<CheckResult> results_;
};

}  // namespace dovrel::tools
