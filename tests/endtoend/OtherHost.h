// A host in a process of its own, which shares nothing with the test's process but the installation.
#pragma once

#include <sys/types.h>

#include <functional>
#include <string>

namespace dovrel::test {

class OtherHost {
  public:
    /// Starts the host; it loads the library, opens a session and then waits for go. Its process first calls
    /// `prepare`, to change its environment or its user; `program` is a copy of the host's own.
    explicit OtherHost(const std::string& library, const std::function<void()>& prepare = nullptr,
                       const std::string& program = OTHER_HOST);
    OtherHost(const OtherHost&) = delete;
    OtherHost& operator=(const OtherHost&) = delete;
    /// Kills what still runs.
    ~OtherHost();

    /// Lets it register, run the command "ping" and, unless it is to stay, unregister and end.
    void go();
    void goAndStay();

    /// Waits until it has registered and its command is answered. False when it failed or ended.
    bool isServed();

    /// Waits for its end; true when all went well.
    bool endsWell();

    void kill();

  private:
    void tell(char word);

    pid_t process_ = -1;
    int to_ = -1;
    int from_ = -1;
};

}  // namespace dovrel::test
