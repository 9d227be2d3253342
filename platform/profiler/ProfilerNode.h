// ProfilerNode: one timed call in the profiler's tree.
//
// Trees can be as deep as the profiled code nests its calls, which may run on a small stack. So nothing here,
// nor what works on trees, calls itself for each level.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

namespace dovrel {

class ProfilerNode {
  public:
    /// `name` is not copied; it is normally a literal. Null, as `parent`, for the root only.
    ProfilerNode(const char* name, ProfilerNode* parent) : name_(name), parent_(parent) {}
    ProfilerNode(const ProfilerNode&) = delete;
    ProfilerNode& operator=(const ProfilerNode&) = delete;

    /// Deletes all calls below this one.
    ~ProfilerNode();

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

    /// Calls `visit(node, depth)` for each call below this one, callers before the calls that they make, in
    /// order of entry. The depth of this node's children is 1. std::bad_alloc if there is no memory for the
    /// way back.
    template <class Visit>
    void forEachBelow(Visit visit) const;

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

template <class Visit>
void ProfilerNode::forEachBelow(Visit visit) const {
    // The callers of the next call, each with the number of its children that were visited.
    std::vector<std::pair<const ProfilerNode*, size_t>> callers = {{this, 0}};
    while (!callers.empty()) {
        auto& [caller, visited] = callers.back();
        if (visited == caller->children_.size()) {
            callers.pop_back();
            continue;
        }
        const ProfilerNode& call = *caller->children_[visited++];
        visit(call, callers.size());
        callers.emplace_back(&call, 0);
    }
}

}  // namespace dovrel
