extern "C" __attribute__((visibility("default"))) const int somethingElse = 1;
