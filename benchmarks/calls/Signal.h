// A pipe on which one process waits for another.
#pragma once

namespace dovrel::benchmarks {

/// Lets processes wait for each other. Made before they are forked.
class Signal {
  public:
    Signal();
    Signal(const Signal&) = delete;
    Signal& operator=(const Signal&) = delete;
    ~Signal();

    void give();

    /// Waits for one call of give(). Returns false if no process is left that could call it.
    bool wait();

    /// A process that only calls give(), or only wait(), says so. As long as a process has said neither, it
    /// counts as one that could call give().
    void onlyGive();
    void onlyWait();

  private:
    int read_;
    int write_;
};

}  // namespace dovrel::benchmarks
