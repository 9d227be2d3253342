// The handlers of this process for Apple events. Private to the layer.
#pragma once

#include <CoreServices/AppleEvents.h>

#include <mutex>
#include <vector>

namespace portability {

/// Handlers by event class and id. Any thread.
class HandlerTable {
  public:
    struct Entry {
        bool system;
        AEEventClass eventClass;
        AEEventID eventID;
        AEEventHandlerUPP handler;
        SRefCon refcon;
    };

    /// The table of the process.
    static HandlerTable& shared();

    /// Adds the entry, in place of one for the same events. Throws std::bad_alloc.
    void install(const Entry& entry);

    /// Adds the entry if there is none for the same events; false when there is. Throws std::bad_alloc.
    bool installIfAbsent(const Entry& entry);

    /// Removes the entry for the same events; a null handler stands for any. False when there is none.
    bool remove(const Entry& entry);

    /// The handlers that are to be tried for an event, the most specific first: class and id, class only, id
    /// only, neither; the application's before the system's.
    std::vector<Entry> handlersFor(AEEventClass eventClass, AEEventID eventID) const;

  private:
    Entry* find(const Entry& entry);

    mutable std::mutex mutex_;
    std::vector<Entry> entries_;
};

}  // namespace portability
