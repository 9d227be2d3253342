// ProfilerNode: one timed call in the profiler's tree.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

namespace dovrel {

class ProfilerNode {
  public:
    /// `name` is not copied; it is normally a literal. Null, as `parent`, for the root only.
    ProfilerNode(const char* name, ProfilerNode* parent) : name_(name), parent_(parent) {}
    ProfilerNode(const ProfilerNode&) = delete;
    ProfilerNode& operator=(const ProfilerNode&) = delete;

    /// Adds a call made by this one. The node belongs to this one.
    ProfilerNode& addChild(const char* name);

    void setStart(uint32_t clock) { start_ = clock; }
    void setEnd(uint32_t clock) { end_ = clock; }

    const char* getName() const { return name_; }
    ProfilerNode* getParent() const { return parent_; }
    uint32_t getStart() const { return start_; }

    /// 0 while the call is open.
    uint32_t getEnd() const { return end_; }

    /// In order of entry.
    const std::vector<std::unique_ptr<ProfilerNode>>& getChildren() const { return children_; }

    /// Clock units from start to end, modulo 2^32.
    uint32_t total() const { return end_ - start_; }

    /// The total without those of the children, modulo 2^32.
    uint32_t self() const { return total() - childrenTotal(); }

    uint32_t childrenTotal() const;

  private:
    const char* name_;
    uint32_t start_ = 0;
    uint32_t end_ = 0;
    ProfilerNode* parent_;
    std::vector<std::unique_ptr<ProfilerNode>> children_;
};

}  // namespace dovrel
