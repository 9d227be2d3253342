#include "portability/transport/ConnectionPool.h"

#include <stdlib.h>

#include <algorithm>
#include <array>
#include <utility>

#include "portability/posix/BriefLock.h"
#include "portability/posix/ProcessMark.h"

namespace portability {

namespace {

const char* rootSetting() {
    const char* value = secure_getenv("POS_SYSTEM_ROOT");
    return value == nullptr ? "" : value;
}

const char* runtimeFolderSetting() {
    const char* value = secure_getenv("XDG_RUNTIME_DIR");
    return value == nullptr ? "" : value;
}

class ConnectionPool {
  public:
    ~ConnectionPool() {
        BriefLockScope held(lock_);
        closed_ = true;
    }

    std::unique_ptr<KeptConnection> take(OSType signature) {
        const char* root = rootSetting();
        const char* runtimeFolder = runtimeFolderSetting();
        BriefLockScope held(lock_);
        if (!held || closed_) return nullptr;
        forgetParents();
        for (size_t i = count_; i-- > 0;) {
            const EndpointKey& key = kept_[i]->key;
            if (key.signature != signature || key.systemRoot != root || key.runtimeFolder != runtimeFolder)
                continue;
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

  private:
    // Drops the connections of the parent process after a fork. Two processes that share a connection would
    // receive each other's replies.
    void forgetParents() {
        if (owner_ == processMark()) return;
        while (count_ > 0)
            kept_[--count_].reset();
        owner_ = processMark();
    }

    BriefLock lock_;
    std::array<std::unique_ptr<KeptConnection>, 8> kept_;  // in the order of use, the last used at the end
    size_t count_ = 0;
    uint32_t owner_ = 0;
    bool closed_ = false;
};

ConnectionPool pool;

}  // namespace

KeptConnection::KeptConnection(OSType signature, FileDescriptor socket)
    : key{signature, rootSetting(), runtimeFolderSetting()}, connection(std::move(socket)) {}

std::unique_ptr<KeptConnection> takeKeptConnection(OSType signature) {
    return pool.take(signature);
}

void keepConnection(std::unique_ptr<KeptConnection> connection) {
    pool.keep(std::move(connection));
}

}  // namespace portability
