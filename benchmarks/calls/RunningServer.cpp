#include "RunningServer.h"

#include <stdexcept>

#include "Peer.h"

namespace dovrel::benchmarks {

RunningServer::RunningServer(const Case& measured)
    : process_(measured.serverProcessor, [&] {
          ready_.onlyGive();
          kPeer.serve(measured.folder, [this] { ready_.give(); });
      }) {
    ready_.onlyWait();
    if (!ready_.wait()) throw std::runtime_error("the server ended before it was ready");
}

void RunningServer::expectRunning() {
    if (!process_.isRunning()) throw std::runtime_error("the server ended during the measurement");
}

}  // namespace dovrel::benchmarks
