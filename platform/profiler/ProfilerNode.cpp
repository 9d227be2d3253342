#include "platform/profiler/ProfilerNode.h"

namespace dovrel {

// Deletes the leaves first and returns from each leaf to its caller. This needs neither recursion nor memory.
ProfilerNode::~ProfilerNode() {
    ProfilerNode* node = this;
    while (node != this || !children_.empty()) {
        if (!node->children_.empty()) {
            node = node->children_.back().get();
            continue;
        }
        node = node->parent_;
        node->children_.pop_back();
    }
}

ProfilerNode& ProfilerNode::addChild(const char* name) {
    children_.push_back(std::make_unique<ProfilerNode>(name, this));
    return *children_.back();
}

uint32_t ProfilerNode::childrenTotal() const {
    uint32_t sum = 0;
    for (const auto& child : children_)
        sum += child->total();
    return sum;
}

}  // namespace dovrel
