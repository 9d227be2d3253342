// DeletionWatch: tells whether and how often certain objects were deleted.
//
// Programs with this file have every delete of theirs go through it. An address counts from its add on; it is
// forgotten with its first deletion, because the next object may get the same one. (A second deletion of one
// object is the sanitizer's to find.) One thread.
#pragma once

#include <set>

namespace dovrel::test {

class DeletionWatch {
  public:
    DeletionWatch();
    DeletionWatch(const DeletionWatch&) = delete;
    DeletionWatch& operator=(const DeletionWatch&) = delete;
    ~DeletionWatch();

    void add(const void* object);

    /// Objects that were added and deleted since.
    int deletions() const { return deletions_; }
    /// Objects that were added and still live.
    int living() const { return static_cast<int>(objects_.size()); }

    /// For the operators: called with every block that is about to be released.
    static void notice(const void* block) noexcept;

  private:
    std::set<const void*> objects_;
    int deletions_ = 0;
    DeletionWatch* next_;
};

}  // namespace dovrel::test
