// Exits with 0 if it has other rights than its caller and could take over the endpoint that it inherited.
#include <libc.h>

#include "portability/transport/Endpoint.h"

int main() {
    portability::EndpointClaim claim;
    const bool isAdopted = portability::EndpointClaim::adoptInherited('EndP', claim);
    // _exit instead of exit, because a leak checker cannot inspect a set-id program.
    _exit(issetugid() == 0 ? 2 : isAdopted ? 0 : 1);
}
