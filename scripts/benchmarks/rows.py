"""The rows of the comparison: one program of benchmarks/calls for each."""
from dataclasses import dataclass

REFERENCE = "stream"  # R, to which all rows are compared
OURS = "dovrel"


@dataclass(frozen=True)
class Row:
    name: str
    title: str
    packages: tuple = ()  # Debian packages that it needs besides those of scripts/packages.txt


ROWS = {row.name: row for row in (
    Row("stream", "R: stream socket"),
    Row("packets", "bare packets"),
    Row("futex", "shared memory, futex"),
    Row("spin", "shared memory, spinning"),
    Row("thrift", "Thrift", ("libboost-dev", "libthrift-dev", "thrift-compiler")),
    Row("sd-bus", "sd-bus peer to peer", ("libsystemd-dev",)),
    Row("grpc", "gRPC", ("libgrpc++-dev", "libprotobuf-dev", "protobuf-compiler", "protobuf-compiler-grpc")),
    Row("zeromq", "ZeroMQ", ("libzmq3-dev",)),
    Row("nng", "nng", ("libnng-dev",)),
    Row("capnp", "Cap'n Proto", ("capnproto", "libcapnp-dev")),
    Row("dovrel", "posCallMethod"),
)}


def packages():
    return [package for row in ROWS.values() for package in row.packages]
