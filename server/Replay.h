// Replay: replies to requests with the replies of a recording, without the server's classes.
//
// In sequence, each request must be the next request of the recording. By request, each request is looked up in
// the recording; if the recording has the same request several times, its replies follow in their order, and
// the last one is repeated.
//
// A live application takes the place of the recorded application whose registration it repeats, and a live
// object that of the recorded object whose creation it repeats. The replay makes new identifiers for both and writes them into
// the replies. So a recording can be replayed by a second host, or by several at the same time.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "server/ApplicationTable.h"
#include "server/Outcome.h"
#include "server/RecordedRequests.h"
#include "server/Recording.h"

namespace merrowd {

enum class ReplayMode { byRequest, inSequence };

class Replay {
  public:
    /// Writes a line to the log.
    using Note = std::function<void(const std::string& text)>;

    /// Registers the live applications in `applications`, which must outlive the object. `note` is called for
    /// each refused request.
    Replay(Recording recording, ReplayMode mode, ApplicationTable& applications, Note note);

    /// Returns the recorded outcome of the request. A request that the recording does not have gets an
    /// exception reply with code 23. An exchange that failed in the recording fails again.
    Outcome handle(const CPPByteArray& request, pid_t sender);

    size_t exchangeCount() const { return recording_.exchanges().size(); }
    size_t replayedCount() const { return replayed_; }
    size_t refusedCount() const { return refused_; }

  private:
    /// The live session (0 if none), the live object ("" if none) and the recorded request.
    using Place = std::tuple<uint32_t, std::string, size_t>;

    const RecordedRequest* find(const RequestKey& key);
    const RecordedRequest* findNext(const ComparedRequest& request);
    const RecordedRequest* findAny(const RequestKey& key, const ComparedRequest& request);
    Outcome replay(const RequestKey& key, const CPPByteArray& request, pid_t sender);
    Outcome refuse(uint32_t command, const std::string& text);
    std::string describeMismatch(const CPPByteArray& request) const;
    Outcome makeOutcome(const RecordedRequest& found, const RequestKey& key, const CPPByteArray& request,
                        pid_t sender);
    void writeNewSession(const RecordedRequest& found, const CPPByteArray& request, CPPByteArray& reply,
                         pid_t sender);
    void writeNewObject(const RecordedRequest& found, const RequestKey& key, CPPByteArray& reply);
    void forgetGoneSessions();
    void forgetSession(uint32_t session);

    const Recording recording_;
    const RecordedRequests recorded_;
    const ReplayMode mode_;
    ApplicationTable& applications_;
    const Note note_;

    IdentifierMeanings meanings_;        // of the live identifiers
    std::map<Place, size_t> positions_;  // how often the request was found
    uint32_t nextObject_ = 1;
    size_t next_ = 0;  // in sequence
    size_t replayed_ = 0;
    size_t refused_ = 0;
};

}  // namespace merrowd
