@0xd3b2f6a1c4e58790;

using Cxx = import "/capnp/c++.capnp";
$Cxx.namespace("calls");

interface Echo {
    echo @0 (bytes :Data) -> (bytes :Data);
}
