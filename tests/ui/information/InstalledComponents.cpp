#include "tests/ui/information/InstalledComponents.h"

#include <cstdlib>

#include "tests/support/BinaryList.h"

namespace dovrel::test {

std::string xmlList(const std::string& entries) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
           "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
           "<plist version=\"1.0\">\n<dict>\n" +
           entries + "</dict>\n</plist>\n";
}

std::string textEntry(const std::string& key, const std::string& value) {
    return "<key>" + key + "</key><string>" + value + "</string>\n";
}

std::string makeBinaryList(const std::string& key, const std::string& value) {
    return binaryList({dictionaryObject({1}, {2}), asciiObject(key), asciiObject(value)});
}

InstalledComponents::InstalledComponents() {
    setenv("POS_SYSTEM_ROOT", root_.path().c_str(), 1);
}

InstalledComponents::~InstalledComponents() {
    unsetenv("POS_SYSTEM_ROOT");
}

void InstalledComponents::writeSystemVersion(const std::string& list) const {
    root_.write("System/Library/CoreServices/SystemVersion.plist", list);
}

void InstalledComponents::writeInfo(const Component& component, const std::string& list) const {
    root_.write(component.path.substr(1) + "/Contents/Info.plist", list);
}

void InstalledComponents::install(const Component& component, const std::string& version,
                                  const std::string& installer) const {
    writeInfo(component,
              xmlList(textEntry("CFBundleIdentifier", component.identifier) +
                      textEntry("CFBundleVersion", version) + textEntry("HarlInstallerVersion", installer)));
}

void InstalledComponents::installAll(const std::string& installer) const {
    install(serverComponent(), "1.1", installer);
    install(libraryComponent(), "1.2", installer);
    install(siblingComponent(), "1.3", installer);
    install(compatibilityComponent(), "1.4", installer);
    install(managementComponent(), "1.5", installer);
}

}  // namespace dovrel::test
