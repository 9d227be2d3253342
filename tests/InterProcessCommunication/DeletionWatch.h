// DeletionWatch: tells whether and how often certain objects were deleted.
//
// Programs with this file have every delete of theirs go through it. An address counts from its add on; it is
// forgotten with its first deletion, because the next object may get the same one. (A second deletion of one
// object is the sanitizer's to find.) One thread.
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

    /// From now on every block of this size that new gives is added.
    void addAllOfSize(std::size_t size) { sizeToAdd_ = size; }

    /// Objects that were added and deleted since.
    int deletions() const { return deletions_; }
    /// Objects that were added and still live.
    int living() const { return static_cast<int>(objects_.size()); }

    /// For the operators: called with every block that is about to be released.
    static void notice(const void* block) noexcept;
    /// The same with every block that new gives.
    static void noticeNew(void* block, std::size_t size);

  private:
    std::set<const void*> objects_;
    int deletions_ = 0;
    std::size_t sizeToAdd_ = 0;
    DeletionWatch* next_;
};

}  // namespace dovrel::test
