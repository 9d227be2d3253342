/*
 * A host that loads the bundle and then a plug-in of its own that is linked with the library.
 *
 *     later BUNDLE PLUGIN
 */
#include <dlfcn.h>
#include <stdio.h>

int main(int argc, char** argv) {
    char path[4096];
    void* bundle;
    void* plugin;
    void* (*linkedFunction)(void);

    if (argc != 3) return 2;
    snprintf(path, sizeof path, "%s/Contents/MacOS/Dovrel", argv[1]);
    bundle = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    plugin = dlopen(argv[2], RTLD_NOW | RTLD_LOCAL);
    if (bundle == NULL || plugin == NULL) {
        fprintf(stderr, "later: %s\n", dlerror());
        return 1;
    }
    *(void**)&linkedFunction = dlsym(plugin, "linkedFunction");
    printf("functions: %s\n", linkedFunction() == dlsym(bundle, "InitializePOS") ? "the same" : "others");
    return 0;
}
