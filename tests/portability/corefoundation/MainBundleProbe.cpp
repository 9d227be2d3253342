// Prints the identifier and the folder of its main bundle, one per line.
#include <CoreFoundation/CoreFoundation.h>

#include <cstdio>

#include "tests/portability/support/Held.h"

int main() {
    const CFBundleRef bundle = CFBundleGetMainBundle();
    const Held<CFURLRef> url(CFBundleCopyBundleURL(bundle));
    std::printf("%s\n%s\n", toText(CFBundleGetIdentifier(bundle)).c_str(), toPath(url.get()).c_str());
}
