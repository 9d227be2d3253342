#include "platform/ProfilerNode.h"

namespace dovrel {

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
