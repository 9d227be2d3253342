// DeletionWatch: tells whether and how often certain objects were deleted.
//
// In programs with this file every delete goes through it. An address is watched from add() until its first
// deletion, because a later object may get the same address. (Deleting one object twice is left to the
// sanitizer.) For a single thread only.
#pragma once

#include <cstddef>
#include <set>

namespace dovrel::test {

class DeletionWatch {
  public:
    DeletionWatch();
    DeletionWatch(const DeletionWatch&) = delete;
    DeletionWatch& operator=(const DeletionWatch&) = delete;
    ~DeletionWatch();

    void add(const void* object);

    /// Adds every block of this size that operator new returns from now on.
    void addAllOfSize(std::size_t size) { sizeToAdd_ = size; }

    /// Returns how many added objects have been deleted.
    int deletions() const { return deletions_; }
    /// Returns how many added objects still exist.
    int living() const { return static_cast<int>(objects_.size()); }

    /// Called by operator delete with every block that is about to be freed.
    static void notice(const void* block) noexcept;
    /// Called by operator new with every block that it is about to return.
    static void noticeNew(void* block, std::size_t size);

  private:
    std::set<const void*> objects_;
    int deletions_ = 0;
    std::size_t sizeToAdd_ = 0;
    DeletionWatch* next_;
};

}  // namespace dovrel::test
