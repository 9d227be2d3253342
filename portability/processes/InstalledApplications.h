// InstalledApplications: the applications that are installed below the current system root.
// Private to the layer.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace portability {

/// The folders "NAME.app" in the fixed places of the current system root, as they are when the object is
/// created. The search is limited: at most 4 folders between a fixed place and an application, and at most
/// 4096 folders in all, the upper ones first. Symbolic links to folders are followed. Folders that cannot be
/// read count as empty.
class InstalledApplications {
  public:
    InstalledApplications();

    /// Returns the canonical paths of all applications with this name (without ".app"), which may be none.
    const std::vector<std::string>& named(const std::string& name) const;

  private:
    std::map<std::string, std::vector<std::string>> applications_;
};

}  // namespace portability
