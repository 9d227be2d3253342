// RecordedRequests: the requests of a recording in a form in which a replay can find them.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "server/Recording.h"
#include "server/RequestKey.h"

namespace merrowd {

/// A request without the numbers that differ from one run of a server to the next. Recorded applications and
/// objects are counted from 1; 0 means none, or one whose registration or creation is not in the recording.
struct ComparedRequest {
    uint32_t command = 0;
    size_t application = 0;
    size_t object = 0;
    std::string digest;

    bool operator<(const ComparedRequest& other) const {
        return std::tie(command, application, object, digest) <
               std::tie(other.command, other.application, other.object, other.digest);
    }
    bool operator==(const ComparedRequest& other) const { return !(*this < other) && !(other < *this); }
};

/// Maps the identifiers of sessions and objects to the applications and objects of the recording.
struct IdentifierMeanings {
    std::map<uint32_t, size_t> applications;
    std::map<std::pair<uint32_t, std::string>, size_t> objects;  ///< by session and object

    ComparedRequest translate(const RequestKey& key) const;
};

struct RecordedRequest {
    size_t exchange = 0;  ///< index in the recording
    ComparedRequest compared;
    std::string summary;           ///< the command, and the class or the method
    size_t newApplication = 0;     ///< if the exchange registered an application
    size_t newObject = 0;          ///< if the exchange created an object
    bool endsApplication = false;  ///< the exchange unregistered its application
};

class RecordedRequests {
  public:
    /// Requests that cannot be read, which no host sends, are left out.
    explicit RecordedRequests(const Recording& recording);

    /// All requests in the order of the recording.
    const std::vector<RecordedRequest>& all() const { return all_; }

    /// Returns the places in all() of the same request, in their order. If there is none, returns those of the same
    /// request from an application that registered in the same way, to an object that was created in the same
    /// way. Empty if there is none either.
    const std::vector<size_t>& findSame(const ComparedRequest& request) const;

  private:
    using Places = std::map<ComparedRequest, std::vector<size_t>>;

    void add(const Recording& recording, size_t exchange);
    ComparedRequest generalize(ComparedRequest request) const;
    void readReply(const CPPByteArray& reply, const RequestKey& key, RecordedRequest& request);

    std::vector<RecordedRequest> all_;
    Places places_;
    Places generalPlaces_;  // by the requests that generalize() returns

    // For each application and object: the first one that was registered or created in the same way.
    std::vector<size_t> firstApplications_{0};
    std::vector<size_t> firstObjects_{0};
    std::map<ComparedRequest, size_t> firstOfKind_;  // by the general request that made it

    // The meanings at the exchange that is being added. A later server may use the same identifiers again.
    IdentifierMeanings meanings_;
};

}  // namespace merrowd
