// A program that reports how it was started, and then waits to be ended.
//
// The report is a file next to the program with one fact per line, "name=value". The file gets
// its name only when it is complete.
#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

namespace {

// Limits the life of a probe that a failed test leaves running, in seconds.
constexpr unsigned kLongestLife = 120;

void reportDescriptors(std::ostream& report) {
    DIR* folder = opendir("/proc/self/fd");
    const int own = dirfd(folder);
    while (const dirent* entry = readdir(folder)) {
        const int descriptor = std::atoi(entry->d_name);
        std::array<char, PATH_MAX> target = {};
        const std::string link = "/proc/self/fd/" + std::string(entry->d_name);
        if (entry->d_name[0] == '.' || descriptor == own ||
            readlink(link.c_str(), target.data(), target.size() - 1) < 0) {
            continue;
        }
        report << "descriptor " << descriptor << '=' << target.data() << '\n';
    }
    closedir(folder);
}

void reportSignals(std::ostream& report) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.rfind("SigBlk:\t", 0) == 0 || line.rfind("SigIgn:\t", 0) == 0) {
            report << line.substr(0, 6) << '=' << line.substr(8) << '\n';
        }
    }
}

void reportIdentity(std::ostream& report) {
    const mode_t mask = umask(0);
    umask(mask);
    std::array<char, PATH_MAX> folder = {};
    report << "id=" << getpid() << "\nparent=" << getppid() << "\nsession=" << getsid(0)
           << "\ngroup=" << getpgrp() << "\nmask=" << mask
           << "\nfolder=" << getcwd(folder.data(), folder.size()) << '\n';
}

}  // namespace

int main(int count, char** arguments) {
    alarm(kLongestLife);
    const std::string name = std::string(arguments[0]) + ".report";
    const std::string unfinished = name + "-" + std::to_string(getpid());
    // Collected before the report is opened, so that its descriptor is not listed.
    std::ostringstream descriptors;
    reportDescriptors(descriptors);
    std::ofstream report(unfinished);
    report << descriptors.str() << "arguments=" << count << '\n';
    reportSignals(report);
    reportIdentity(report);
    for (char** entry = environ; *entry != nullptr; ++entry) {
        report << "environment " << *entry << '\n';
    }
    report.close();
    std::rename(unfinished.c_str(), name.c_str());
    for (;;) {
        pause();
    }
}
