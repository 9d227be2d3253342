// Installs the probe program, reads its report, and ends it.
#pragma once

#include <sys/types.h>

#include <map>
#include <string>

/// Copies the probe to `file` and creates the folders above it.
void installProbe(const std::string& file);

/// The report of a probe about itself; see LaunchProbe.cpp. The destructor ends the probe.
class ProbeReport {
  public:
    /// Waits for the report of the probe that was started as `program`. Fails the test if no report appears.
    explicit ProbeReport(const std::string& program);
    ~ProbeReport();
    ProbeReport(const ProbeReport&) = delete;
    ProbeReport& operator=(const ProbeReport&) = delete;

    /// Returns the value of a fact; "(none)" if it was not reported.
    std::string operator[](const std::string& name) const;

    pid_t id() const { return id_; }
    const std::map<std::string, std::string>& all() const { return facts_; }

    /// Ends the probe and waits until no process has its number.
    void endProbe();

  private:
    std::map<std::string, std::string> facts_;
    pid_t id_ = 0;
};
