#include "tools/properties/LineProblems.h"

#include <iostream>
#include <nlohmann/json.hpp>

#include "platform/text/ReadableText.h"

namespace dovrel::tools {

void printProblems(const std::vector<FileProblem>& problems, bool isJson) {
    auto list = nlohmann::ordered_json::array();
    for (const auto& [file, problem] : problems) {
        if (isJson) {
            list.push_back({{"file", readableText(file)}, {"line", problem.line}, {"text", problem.text}});
        } else {
            const std::string line = problem.line != 0 ? ":" + std::to_string(problem.line) : "";
            std::cout << file << line << ": " << problem.text << "\n";
        }
    }
    if (isJson) std::cout << list.dump(2) << "\n";
}

}  // namespace dovrel::tools
