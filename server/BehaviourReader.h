// BehaviourReader: reads the behaviours of a described class from its section of a settings text.
#pragma once

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "server/Behaviour.h"
#include "server/SettingsText.h"

namespace merrowd {

class BehaviourReader {
  public:
    /// Each problem adds a line to `problems`, which begins with its place and the class. Both arguments must
    /// outlive the object.
    BehaviourReader(const SettingsSection& section, const std::string& className,
                    std::vector<std::string>& problems);

    /// Returns the behaviour whose keys begin with `path` and a point: a method, or the creation of objects.
    /// Wrong entries are left out.
    Behaviour read(const std::string& path, bool hasResult);

    /// Adds a problem for each key of the section that is not in `known` and that no behaviour uses.
    void reportUnusedKeys(const std::set<std::string>& known);

    /// Adds a problem with a key.
    void report(const std::string& key, const std::string& problem);

    /// Returns all words that can follow the point in a key. Tests compare documents with them.
    static std::vector<std::string> words();

  private:
    using Parts = std::vector<std::shared_ptr<const Behaviour>>;

    // `level` is the number of behaviours that contain this one.
    Behaviour readBehaviour(const std::string& path, bool isCase, int level);
    Parts readParts(const Behaviour& whole, const char* word, bool areCases, int level);
    bool isUsableName(const std::string& name, const std::string& key);
    void checkBehaviour(const Behaviour& behaviour);

    const SettingsSection& section_;
    const std::string& className_;
    std::vector<std::string>& problems_;
    bool hasResult_ = true;
    std::set<std::string> used_;
};

}  // namespace merrowd
