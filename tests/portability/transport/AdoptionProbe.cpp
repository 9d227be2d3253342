// Exits with 0 if it runs with other rights than its caller's and takes over the endpoint that was handed to
// it.
#include <libc.h>

#include "portability/transport/Endpoint.h"

int main() {
    portability::EndpointClaim claim;
    const bool isAdopted = portability::EndpointClaim::adoptInherited('EndP', claim);
    // Not by way of exit: a leak checker cannot look into a program with rights of its own.
    _exit(issetugid() == 0 ? 2 : isAdopted ? 0 : 1);
}
