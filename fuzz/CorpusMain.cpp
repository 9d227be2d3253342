// Runs a fuzz target on files if there is no fuzzer. Each file is used unchanged, truncated at each place,
// and with each of its bytes changed. Arguments: files and folders of files.

#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "FuzzTarget.h"

namespace {

using Bytes = std::vector<uint8_t>;

// The largest number of places at which a seed is damaged. In a larger seed they are evenly distributed.
constexpr size_t kMostPlaces = 1000;

void run(const Bytes& bytes) {
    // The copy has exactly the size of its memory block, so that a sanitizer finds every read beyond the end.
    const Bytes exact(bytes.begin(), bytes.end());
    LLVMFuzzerTestOneInput(exact.data(), exact.size());
}

void runDamaged(const Bytes& seed) {
    const size_t step = seed.size() / kMostPlaces + 1;
    for (size_t place = 0; place < seed.size(); place += step) {
        run(Bytes(seed.begin(), seed.begin() + static_cast<std::ptrdiff_t>(place)));
        for (const uint8_t change : {uint8_t{0x01}, uint8_t{0x80}, uint8_t{0xFF}}) {
            Bytes changed = seed;
            changed[place] = static_cast<uint8_t>(changed[place] ^ change);
            run(changed);
        }
    }
}

std::vector<std::filesystem::path> filesIn(const std::filesystem::path& place) {
    if (!std::filesystem::is_directory(place)) return {place};
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(place))
        files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

}  // namespace

int main(int argumentCount, char** arguments) try {
    size_t seeds = 0;
    for (int i = 1; i < argumentCount; ++i) {
        for (const std::filesystem::path& file : filesIn(arguments[i])) {
            std::printf("%s\n", file.string().c_str());
            std::fflush(stdout);
            std::ifstream stream(file, std::ios::binary);
            if (!stream) throw std::runtime_error("cannot be read: " + file.string());
            const Bytes seed{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
            run(seed);
            runDamaged(seed);
            ++seeds;
        }
    }
    std::printf("%zu seeds\n", seeds);
    return seeds == 0 ? 1 : 0;
} catch (const std::exception& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return 1;
}
