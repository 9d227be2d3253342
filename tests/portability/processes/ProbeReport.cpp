#include "ProbeReport.h"

#include <gtest/gtest.h>
#include <signal.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "portability/processes/ProcessTable.h"
#include "tests/support/WaitUntil.h"

namespace files = std::filesystem;
using dovrel::test::waitUntil;

void installProbe(const std::string& file) {
    files::create_directories(files::path(file).parent_path());
    files::copy_file(LAUNCH_PROBE, file);
}

ProbeReport::ProbeReport(const std::string& program) {
    const std::string file = program + ".report";
    EXPECT_TRUE(waitUntil([&file] { return files::exists(file); })) << "no report from " << program;
    std::ifstream report(file);
    for (std::string line; std::getline(report, line);) {
        const std::size_t equals = line.find('=');
        facts_[line.substr(0, equals)] = line.substr(equals + 1);
    }
    files::remove(file);
    id_ = std::atoi((*this)["id"].c_str());
}

ProbeReport::~ProbeReport() {
    endProbe();
}

std::string ProbeReport::operator[](const std::string& name) const {
    const auto fact = facts_.find(name);
    return fact == facts_.end() ? "(none)" : fact->second;
}

void ProbeReport::endProbe() {
    if (id_ > 0) {
        kill(id_, SIGKILL);
        EXPECT_TRUE(waitUntil([this] { return !portability::findProcess(id_); }));
        id_ = 0;
    }
}
