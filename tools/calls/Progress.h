// Shows on a terminal that a call is running.
#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace dovrel::tools {

/// Returns a number of bytes for people: "5 bytes", "1.5 MiB".
std::string sizeText(double bytes);

/// While it exists, one line of standard error shows what the tool does and for how long, and is updated several
/// times a second. The line appears after half a second, and disappears at the end. Shows nothing if standard error
/// is not a terminal. The thread that shows the line touches nothing else.
class Progress {
  public:
    explicit Progress(const std::string& activity);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress();

    void setActivity(const std::string& activity);

  private:
    void show();

    std::mutex mutex_;
    std::condition_variable changed_;
    std::string activity_;
    bool isEnding_ = false;
    std::thread thread_;
};

}  // namespace dovrel::tools
