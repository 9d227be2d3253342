#include "portability/transport/ConnectionPool.h"

#include <sys/auxv.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include "portability/posix/BriefLock.h"
#include "portability/posix/ProcessMark.h"

namespace portability {

namespace {

// The environment variables of a key. "" if they are unset, and in a program that has another user's rights.
struct Settings {
    const char* systemRoot = "";
    const char* runtimeFolder = "";
};

// Returns the value of the entry if it is that of the variable whose name, with "=", is `name`.
const char* valueOf(const char* entry, const char* name, size_t length) {
    return std::strncmp(entry, name, length) == 0 ? entry + length : nullptr;
}

// Reads both variables in one pass over the environment, because this happens at each exchange.
Settings currentSettings() {
    static const bool isSecure = getauxval(AT_SECURE) != 0;
    constexpr char kRoot[] = "POS_SYSTEM_ROOT=";
    constexpr char kRuntimeFolder[] = "XDG_RUNTIME_DIR=";
    Settings settings;
    if (isSecure || environ == nullptr) return settings;
    const char* root = nullptr;
    const char* runtimeFolder = nullptr;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const char first = **entry;
        if (first == 'P' && root == nullptr) root = valueOf(*entry, kRoot, sizeof kRoot - 1);
        if (first == 'X' && runtimeFolder == nullptr)
            runtimeFolder = valueOf(*entry, kRuntimeFolder, sizeof kRuntimeFolder - 1);
    }
    if (root != nullptr) settings.systemRoot = root;
    if (runtimeFolder != nullptr) settings.runtimeFolder = runtimeFolder;
    return settings;
}

class ConnectionPool {
  public:
    ~ConnectionPool() {
        BriefLockScope held(lock_);
        closed_ = true;
    }

    std::unique_ptr<KeptConnection> take(OSType signature) {
        const Settings settings = currentSettings();
        BriefLockScope held(lock_);
        if (!held || closed_) return nullptr;
        forgetParents();
        for (size_t i = count_; i-- > 0;) {
            const EndpointKey& key = kept_[i]->key;
            if (key.signature != signature || key.systemRoot != settings.systemRoot ||
                key.runtimeFolder != settings.runtimeFolder)
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

    void releaseReplies() {
        BriefLockScope held(lock_);
        if (!held || closed_) return;
        forgetParents();
        for (size_t i = 0; i < count_; ++i)
            kept_[i]->connection.sendReleased();
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

KeptConnection::KeptConnection(OSType signature, FileDescriptor socket) : connection(std::move(socket)) {
    const Settings settings = currentSettings();
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
