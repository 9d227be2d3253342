/* A bare program that exchanges one packet of 64 bytes with an echoing server.
 *
 *     startPeer SOCKET
 *
 * Writes one line: the processor time since exec in microseconds at main and after the reply, the resident memory in KiB and
 * the number of mapped executables and libraries.
 */
#include <stdio.h>
#include <string.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "start.h"

int main(int count, char** arguments) {
    const double begun = processorTime();
    if (count < 2) refuse("usage: startPeer SOCKET");
    struct sockaddr_un address = {.sun_family = AF_UNIX};
    strncpy(address.sun_path, arguments[1], sizeof address.sun_path - 1);
    const int connection = socket(AF_UNIX, SOCK_SEQPACKET, 0);
    if (connect(connection, (const struct sockaddr*)&address, sizeof address) != 0) refuse("connect");
    char packet[64] = "request";
    char reply[64];
    if (write(connection, packet, sizeof packet) != sizeof packet) refuse("write");
    if (read(connection, reply, sizeof reply) != sizeof reply || memcmp(packet, reply, sizeof reply) != 0)
        refuse("read");
    const double end = processorTime();
    printf("%.1f %.1f %ld %d\n", begun, end, residentMemory(), mappedLibraries());
    return 0;
}
