// The Apple event handlers of this process. Private to the layer.
#pragma once

#include <CoreServices/AppleEvents.h>

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
    /// only, id only, neither. Throws std::bad_alloc.
    std::vector<Entry> handlersFor(AEEventClass eventClass, AEEventID eventID) const;

  private:
    Entry* find(const Entry& entry);

    mutable std::mutex mutex_;
    std::vector<Entry> entries_;
};

}  // namespace portability
