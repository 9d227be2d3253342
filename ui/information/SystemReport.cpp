#include "ui/information/SystemReport.h"

#include "ui/information/ComponentVersions.h"
#include "ui/information/SystemInformation.h"

namespace dovrel {

namespace {

std::string heading(const char* text) {
    return std::string(text) + "\n";
}

std::string line(const std::string& name, const std::string& value) {
    return "  " + name + ": " + value + "\n";
}

std::string componentLine(const Component& component, const std::string& version) {
    return line(component.name, version + " (installer " + installerVersion(component.path) + ")");
}

std::string operatingSystemSection() {
    return heading("Operating system") + line("Name", osNameText()) + line("Version", osVersionText());
}

std::string componentsSection() {
    return heading("Components") + componentLine(serverComponent(), serverVersionText()) +
           componentLine(libraryComponent(), libraryVersionText()) +
           componentLine(siblingComponent(), siblingVersionText()) +
           componentLine(compatibilityComponent(), compatibilityVersionText()) +
           componentLine(managementComponent(), managementVersionText());
}

std::string consistencySection() {
    return heading("Consistency") + line("Installer version", componentsInstallerVersion()) +
           "  (* behind it: not all components come from the same installer)\n";
}

}  // namespace

std::string removedInformationText() {
    return "<Removed system information> \n\n"
           "<Removed crash log information> \n\n";
}

std::string systemReport() {
    return operatingSystemSection() + "\n" + componentsSection() + "\n" + consistencySection() + "\n" +
           removedInformationText();
}

}  // namespace dovrel
