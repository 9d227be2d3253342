// The probe program in tests: where it is put, what it reports, and its end.
#pragma once

#include <sys/types.h>

#include <map>
#include <string>

/// Copies the probe to `file`, with the folders above it.
void installProbe(const std::string& file);

/// What a probe wrote about itself; see LaunchProbe.cpp. Ends the probe when it goes.
class ProbeReport {
  public:
    /// Waits for the report of the probe that was started as `program`. Fails the test when none comes.
    explicit ProbeReport(const std::string& program);
    ~ProbeReport();
    ProbeReport(const ProbeReport&) = delete;
    ProbeReport& operator=(const ProbeReport&) = delete;

    /// The value under a name; "(none)" when it was not reported.
    std::string operator[](const std::string& name) const;

    pid_t id() const { return id_; }
    const std::map<std::string, std::string>& all() const { return facts_; }

    /// Ends the probe and waits until nothing runs under its number.
    void endProbe();

  private:
    std::map<std::string, std::string> facts_;
    pid_t id_ = 0;
};
