// Code for a bundle that a test loads; it does nothing.
extern "C" __attribute__((visibility("default"))) int dovrelLoadedCode() {
    return 0;
}
