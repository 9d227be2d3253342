// The Apple event handlers of this process. Private to the layer.
#pragma once

#include <CoreServices/AppleEvents.h>

#include <array>
#include <cstddef>
#include <mutex>
#include <vector>

namespace portability {

/// Stores handlers by event class and event id. Thread-safe.
class HandlerTable {
  public:
    struct Entry {
        bool system;
        AEEventClass eventClass;
        AEEventID eventID;
        AEEventHandlerUPP handler;
        SRefCon refcon;
    };

    /// The handlers for one event. There are at most two for each combination of class and id with their wild
    /// cards, so that no memory has to be allocated for an event.
    class Handlers {
      public:
        void add(const Entry& entry) { entries_[count_++] = entry; }

        const Entry* begin() const { return entries_.data(); }
        const Entry* end() const { return begin() + count_; }
        size_t size() const { return count_; }
        const Entry& operator[](size_t index) const { return entries_[index]; }

      private:
        std::array<Entry, 8> entries_;
        size_t count_ = 0;
    };

    /// Returns the table of the process.
    static HandlerTable& shared();

    /// Adds the entry. Replaces an entry for the same events. Throws std::bad_alloc.
    void install(const Entry& entry);

    /// Adds the entry if there is none for the same events, and returns whether it did.
    /// Throws std::bad_alloc.
    bool installIfAbsent(const Entry& entry);

    /// Removes the entry for the same events if it has the same handler; a null handler matches every
    /// handler. Returns false if there is no such entry.
    bool remove(const Entry& entry);

    /// Returns the handlers for an event in the order in which they must be tried. The application's handlers
    /// come before the system's. Within each group the most specific handler comes first: class and id, class
    /// only, id only, neither.
    Handlers handlersFor(AEEventClass eventClass, AEEventID eventID) const;

  private:
    Entry* find(const Entry& entry);
    void add(const Entry& entry);

    mutable std::mutex mutex_;
    std::vector<Entry> entries_;  // in the order in which handlersFor() returns them
};

}  // namespace portability
