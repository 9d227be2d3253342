#include "portability/transport/ConnectionPool.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include "portability/posix/BriefLock.h"
#include "portability/posix/ProcessMark.h"
#include "portability/transport/EndpointSettings.h"

namespace portability {

namespace {

class ConnectionPool {
  public:
    ~ConnectionPool() {
        BriefLockScope held(lock_);
        closed_ = true;
    }

    std::unique_ptr<KeptConnection> take(OSType signature) {
        BriefLockScope held(lock_);
        if (!held || closed_) return nullptr;
        forgetParents();
        const EndpointSettings settings = settings_.read();
        for (size_t i = count_; i-- > 0;) {
            if (!isFor(kept_[i]->key, signature, settings)) continue;
            std::rotate(kept_.begin() + i, kept_.begin() + i + 1, kept_.begin() + count_);
            return std::move(kept_[--count_]);
        }
        return nullptr;
    }

    // Adds a connection. Returns the connection that the caller must close because there is no room for it,
    // or null.
    std::unique_ptr<KeptConnection> keep(std::unique_ptr<KeptConnection> connection) {
        BriefLockScope held(lock_);
        if (!held || closed_) return connection;
        forgetParents();
        if (count_ < kept_.size()) {
            kept_[count_++] = std::move(connection);
            return nullptr;
        }
        std::rotate(kept_.begin(), kept_.begin() + 1, kept_.end());
        return std::exchange(kept_.back(), std::move(connection));
    }

    void releaseReplies() {
        BriefLockScope held(lock_);
        if (!held || closed_) return;
        forgetParents();
        for (size_t i = 0; i < count_; ++i)
            kept_[i]->connection.sendReleased();
    }

  private:
    static bool isFor(const EndpointKey& key, OSType signature, const EndpointSettings& settings) {
        return key.signature == signature && std::strcmp(key.systemRoot.c_str(), settings.systemRoot) == 0 &&
               std::strcmp(key.runtimeFolder.c_str(), settings.runtimeFolder) == 0;
    }

    // Drops the connections of the parent process after a fork. Two processes that share a connection would
    // receive each other's replies.
    void forgetParents() {
        if (owner_ == processMark()) return;
        while (count_ > 0)
            kept_[--count_].reset();
        owner_ = processMark();
    }

    BriefLock lock_;
    EndpointSettingsReader settings_;
    std::array<std::unique_ptr<KeptConnection>, 8> kept_;  // in the order of use, the last used at the end
    size_t count_ = 0;
    uint32_t owner_ = 0;
    bool closed_ = false;
};

ConnectionPool pool;

}  // namespace

KeptConnection::KeptConnection(OSType signature, FileDescriptor socket) : connection(std::move(socket)) {
    const EndpointSettings settings = EndpointSettingsReader().read();
    key = {signature, settings.systemRoot, settings.runtimeFolder};
}

std::unique_ptr<KeptConnection> takeKeptConnection(OSType signature) {
    return pool.take(signature);
}

void keepConnection(std::unique_ptr<KeptConnection> connection) {
    pool.keep(std::move(connection));
}

void releaseRepliesOfKeptConnections() {
    pool.releaseReplies();
}

}  // namespace portability
