// ProfilerNode: one timed call in the profiler's tree.
//
// The tree is as deep as the profiled code nests its calls, and that code may run on a small stack. So no
// function of this class, and no code that walks a tree, recurses.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

namespace dovrel {

class ProfilerNode {
  public:
    /// `name` is not copied; it is normally a string literal. `name` and `parent` are null for the root only.
    ProfilerNode(const char* name, ProfilerNode* parent) : name_(name), parent_(parent) {}
    ProfilerNode(const ProfilerNode&) = delete;
    ProfilerNode& operator=(const ProfilerNode&) = delete;

    /// Deletes all calls below this call.
    ~ProfilerNode();

    /// Adds a call made by this call, and returns it. This node owns the new node.
    ProfilerNode& addChild(const char* name);

    void setStart(uint32_t clock) { start_ = clock; }
    void setEnd(uint32_t clock) { end_ = clock; }

    const char* getName() const { return name_; }
    ProfilerNode* getParent() const { return parent_; }
    uint32_t getStart() const { return start_; }

    /// Returns 0 while the call is open.
    uint32_t getEnd() const { return end_; }

    /// The calls that this call made, in order of entry.
    const std::vector<std::unique_ptr<ProfilerNode>>& getChildren() const { return children_; }

    /// Calls `visit(node, depth)` for each call below this one, in order of entry. A call is visited before
    /// the calls that it made. The children of this node have depth 1. Throws std::bad_alloc if there is no
    /// memory for the list of open callers.
    template <class Visit>
    void forEachBelow(Visit visit) const;

    /// Returns the clock units from start to end, modulo 2^32.
    uint32_t total() const { return end_ - start_; }

    /// Returns the total minus the totals of the children, modulo 2^32.
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
    // The path from this node to the next call. Each entry holds the number of children already visited.
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
