// A host in a separate process. It shares only the installation with the test's process.
#pragma once

#include <sys/types.h>

#include <functional>
#include <string>

namespace dovrel::test {

class OtherHost {
  public:
    /// Starts the host, which loads the library, opens a session and then waits for go(). Its process
    /// first calls `prepare`, for example to change its environment or its user. `program` is the
    /// host's executable or a copy of it.
    explicit OtherHost(const std::string& library, const std::function<void()>& prepare = nullptr,
                       const std::string& program = OTHER_HOST);
    OtherHost(const OtherHost&) = delete;
    OtherHost& operator=(const OtherHost&) = delete;
    /// Kills the host if it still runs.
    ~OtherHost();

    /// Makes the host register and run the command "ping". After go() it then unregisters and ends; after
    /// goAndStay() it keeps running.
    void go();
    void goAndStay();

    /// Waits until the host has registered and has the reply to its command.
    /// Returns false if it failed or ended.
    bool isServed();

    /// Waits for the end of the host; returns true if everything succeeded.
    bool endsWell();

    void kill();

  private:
    void tell(char word);

    pid_t process_ = -1;
    int to_ = -1;
    int from_ = -1;
};

}  // namespace dovrel::test
