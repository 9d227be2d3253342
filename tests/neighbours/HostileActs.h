// What a hostile process of the same user can send to the server.
#pragma once

#include <iosfwd>
#include <vector>

/// One kind of attack. `run` opens its own connections to the server of the current system root, attacks once,
/// and closes them. It returns when the server has closed the connections or has had time to read the packets.
struct HostileAct {
    const char* name;
    void (*run)();
};

std::ostream& operator<<(std::ostream& stream, const HostileAct& act);

/// Returns all kinds of attacks.
const std::vector<HostileAct>& hostileActs();
