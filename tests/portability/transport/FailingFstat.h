// Makes fstat fail in this test program, which must be linked with --wrap for it.
#pragma once

/// While the object exists, the call with that number fails with EIO (1 is the next call). All other calls
/// work as usual. Only one object at a time.
class FailingFstat {
  public:
    explicit FailingFstat(int number);
    FailingFstat(const FailingFstat&) = delete;
    FailingFstat& operator=(const FailingFstat&) = delete;
    ~FailingFstat();

    /// Returns true if the call with that number was made.
    static bool hasFailed();
};
