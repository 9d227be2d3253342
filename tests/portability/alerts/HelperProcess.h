// The alert helper as a host starts it, with the test as the host.
#pragma once

#include <sys/types.h>

#include <string>

#include "portability/alerts/AlertMessages.h"
#include "portability/posix/FileDescriptor.h"

namespace alerthelper::test {

class HelperProcess {
  public:
    /// Starts the program with the test's environment. Its standard output and error are added to the file.
    explicit HelperProcess(const std::string& outputFile);
    HelperProcess(const HelperProcess&) = delete;
    HelperProcess& operator=(const HelperProcess&) = delete;

    /// Kills a program that still runs.
    ~HelperProcess();

    /// Sends bytes as they are, or a request. A helper that no longer reads is not a failure.
    void sendBytes(const std::string& bytes) const;
    void send(const portability::AlertRequest& request) const;

    /// The next line without its line feed; "" at the end of the stream, or after half a minute.
    std::string readLine();

    /// Whether the stream has a line, or its end, at this moment.
    bool hasLine() const;

    /// Closes the host's end of the stream.
    void closeStream() { stream_.reset(); }

    /// Waits for the end. Returns the exit code, -1 if a signal ended the program or it still runs after half
    /// a minute.
    int wait();

    pid_t process() const { return process_; }

  private:
    pid_t process_ = -1;
    portability::FileDescriptor stream_;
};

}  // namespace alerthelper::test
