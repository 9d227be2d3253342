#include "server/Misbehaviour.h"

namespace merrowd {

bool Misbehaviour::strikes(uint32_t exchangeCommand) {
    if (fault == Fault::none || (command != 0 && command != exchangeCommand)) return false;
    if (skip > 0) {
        --skip;
        return false;
    }
    if (times != 0 && struck == times) return false;
    ++struck;
    return true;
}

}  // namespace merrowd
