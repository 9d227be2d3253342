#include "portability/appleevents/HandlerTable.h"

#include <algorithm>

namespace portability {

namespace {

bool isForSameEvents(const HandlerTable::Entry& one, const HandlerTable::Entry& other) {
    return one.system == other.system && one.eventClass == other.eventClass && one.eventID == other.eventID;
}

bool matches(const HandlerTable::Entry& entry, AEEventClass eventClass, AEEventID eventID) {
    return (entry.eventClass == eventClass || entry.eventClass == typeWildCard) &&
           (entry.eventID == eventID || entry.eventID == typeWildCard);
}

int rank(const HandlerTable::Entry& entry) {
    return (entry.system ? 4 : 0) + (entry.eventClass == typeWildCard ? 2 : 0) +
           (entry.eventID == typeWildCard ? 1 : 0);
}

}  // namespace

HandlerTable& HandlerTable::shared() {
    static HandlerTable table;
    return table;
}

HandlerTable::Entry* HandlerTable::find(const Entry& entry) {
    for (Entry& candidate : entries_) {
        if (isForSameEvents(candidate, entry)) return &candidate;
    }
    return nullptr;
}

void HandlerTable::install(const Entry& entry) {
    std::lock_guard<std::mutex> lock(mutex_);
    if (Entry* present = find(entry)) {
        *present = entry;
    } else {
        add(entry);
    }
}

bool HandlerTable::installIfAbsent(const Entry& entry) {
    std::lock_guard<std::mutex> lock(mutex_);
    if (find(entry) != nullptr) return false;
    add(entry);
    return true;
}

bool HandlerTable::remove(const Entry& entry) {
    std::lock_guard<std::mutex> lock(mutex_);
    Entry* present = find(entry);
    if (present == nullptr || (entry.handler != nullptr && entry.handler != present->handler)) return false;
    entries_.erase(entries_.begin() + (present - entries_.data()));
    return true;
}

HandlerTable::Handlers HandlerTable::handlersFor(AEEventClass eventClass, AEEventID eventID) const {
    Handlers found;
    std::lock_guard<std::mutex> lock(mutex_);
    for (const Entry& entry : entries_) {
        if (matches(entry, eventClass, eventID)) found.add(entry);
    }
    return found;
}

void HandlerTable::add(const Entry& entry) {
    const auto place = std::upper_bound(entries_.begin(), entries_.end(), entry,
                                        [](const Entry& a, const Entry& b) { return rank(a) < rank(b); });
    entries_.insert(place, entry);
}

}  // namespace portability
