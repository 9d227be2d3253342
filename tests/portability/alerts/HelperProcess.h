// Starts the alert helper as a host would. The test acts as the host.
#pragma once

#include <sys/types.h>

#include <string>

#include "portability/alerts/AlertMessages.h"
#include "portability/posix/FileDescriptor.h"

namespace alerthelper::test {

class HelperProcess {
  public:
    /// Starts the program with the test's environment. Its standard output
    /// and error are appended to the file.
    explicit HelperProcess(const std::string& outputFile);
    HelperProcess(const HelperProcess&) = delete;
    HelperProcess& operator=(const HelperProcess&) = delete;

    /// Kills the program if it still runs.
    ~HelperProcess();

    /// Sends bytes unchanged, or a request. If the helper no longer reads, that is not a failure.
    void sendBytes(const std::string& bytes) const;
    void send(const portability::AlertRequest& request) const;

    /// Returns the next line without its line feed; "" at the end of the stream, or after a minute.
    std::string readLine();

    /// Returns true if a line, or the end of the stream, has already arrived.
    bool hasLine() const;

    /// Closes the host's end of the stream.
    void closeStream() { stream_.reset(); }

    /// Waits for the end of the program. Returns its exit code, or -1 if a signal ended it or if
    /// it still runs after a minute.
    int wait();

    pid_t process() const { return process_; }

  private:
    pid_t process_ = -1;
    portability::FileDescriptor stream_;
};

}  // namespace alerthelper::test
