// The mark that shows whether the components come from one installer.
#include <sys/inotify.h>
#include <unistd.h>

#include <algorithm>
#include <map>
#include <vector>

#include "tests/ui/information/InstalledComponents.h"
#include "ui/information/ComponentVersions.h"

namespace dovrel {
namespace {

class ComponentsInstallerVersionTest : public test::InstalledComponents {
  protected:
    /// Returns the components whose property lists `work` reads, by name, in the order of the first reading.
    template <class Work>
    std::vector<std::string> readDuring(const Work& work) const {
        const int watcher = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
        std::map<int, std::string> names;
        for (const Component& component : {serverComponent(), libraryComponent(), siblingComponent(),
                                           compatibilityComponent(), managementComponent()}) {
            const std::string list = inRoot(component.path) + "/Contents/Info.plist";
            names[inotify_add_watch(watcher, list.c_str(), IN_OPEN | IN_ONESHOT)] = component.name;
        }
        work();

        std::vector<std::string> opened;
        alignas(inotify_event) char bytes[4096];
        const ssize_t length = read(watcher, bytes, sizeof bytes);
        for (ssize_t at = 0; at < length;) {
            inotify_event event;
            std::copy_n(bytes + at, sizeof event, reinterpret_cast<char*>(&event));
            if ((event.mask & IN_OPEN) != 0) opened.push_back(names[event.wd]);
            at += static_cast<ssize_t>(sizeof event + event.len);
        }
        close(watcher);
        return opened;
    }
};

TEST_F(ComponentsInstallerVersionTest, OneInstaller_IsItsVersion) {
    installAll("7.0");
    EXPECT_EQ(componentsInstallerVersion(), "7.0");
}

TEST_F(ComponentsInstallerVersionTest, AnyOfTheThreeThatDiffers_AppendsTheMark) {
    for (const auto component : {serverComponent, libraryComponent, siblingComponent}) {
        installAll("7.0");
        install(component(), "1", "7.1");
        EXPECT_EQ(componentsInstallerVersion(), "7.0*") << component().name;
    }
}

TEST_F(ComponentsInstallerVersionTest, SeveralThatDiffer_AppendOneMark) {
    installAll("7.0");
    install(managementComponent(), "1", "6.0");
    install(serverComponent(), "1", "5.0");
    EXPECT_EQ(componentsInstallerVersion(), "6.0*");
}

TEST_F(ComponentsInstallerVersionTest, Comparison_IsExact) {
    for (const char* other : {"7.0 ", "7.00", "7.0.0", " 7.0", "7", "7.0*", ""}) {
        installAll("7.0");
        install(serverComponent(), "1", other);
        EXPECT_EQ(componentsInstallerVersion(), "7.0*") << other;
    }
}

TEST_F(ComponentsInstallerVersionTest, CompatibilityBundle_DoesNotCount) {
    installAll("7.0");
    install(compatibilityComponent(), "1", "1.0");
    EXPECT_EQ(componentsInstallerVersion(), "7.0");
}

TEST_F(ComponentsInstallerVersionTest, ComponentThatIsMissing_CarriesTheMarkUnlessAllFourAre) {
    EXPECT_EQ(componentsInstallerVersion(), "n/a");
    install(compatibilityComponent(), "1", "7.0");
    EXPECT_EQ(componentsInstallerVersion(), "n/a");
    install(siblingComponent(), "1", "7.0");
    EXPECT_EQ(componentsInstallerVersion(), "n/a*");
    install(managementComponent(), "1", "7.0");
    install(serverComponent(), "1", "7.0");
    EXPECT_EQ(componentsInstallerVersion(), "7.0*") << "the library is missing";
    install(libraryComponent(), "1", "7.0");
    EXPECT_EQ(componentsInstallerVersion(), "7.0");
}

TEST_F(ComponentsInstallerVersionTest, Lists_AreReadInOrderUpToTheFirstDifference) {
    using Names = std::vector<std::string>;
    installAll("7.0");
    const std::string management = managementComponent().name;
    const std::string server = serverComponent().name;
    const std::string library = libraryComponent().name;
    const std::string sibling = siblingComponent().name;
    EXPECT_EQ(readDuring(componentsInstallerVersion), (Names{management, server, library, sibling}));
    install(libraryComponent(), "1", "7.1");
    EXPECT_EQ(readDuring(componentsInstallerVersion), (Names{management, server, library}));
    install(serverComponent(), "1", "7.1");
    EXPECT_EQ(readDuring(componentsInstallerVersion), (Names{management, server}));
}

}  // namespace
}  // namespace dovrel
