#include "client/VersionBanner.h"

#include "ui/information/ComponentVersions.h"

namespace dovrel {

namespace {
constexpr char kBannerStart[] = "Dovrel Version ";
}  // namespace

std::string versionBanner(const std::string& bundlePath) {
    return kBannerStart + bundleVersionText(libraryIdentifier(), bundlePath);
}

}  // namespace dovrel
