// Makes fstat fail in this test program, which is linked with --wrap for it.
#pragma once

/// Until the object goes, the call with that number (1 is the next one) fails with EIO; the others do what
/// they always do. One object at a time.
class FailingFstat {
  public:
    explicit FailingFstat(int number);
    FailingFstat(const FailingFstat&) = delete;
    FailingFstat& operator=(const FailingFstat&) = delete;
    ~FailingFstat();

    /// Whether there were so many calls.
    static bool hasFailed();
};
