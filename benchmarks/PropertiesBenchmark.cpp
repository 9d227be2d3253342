// Loading and saving the text form of properties, beside the nearest thing that is at hand everywhere: the key files of
// GLib. Both hold the same entries; 10 MB and 100 MB of them are measured in one run, so that the table shows the ratio
// as well as how the time grows with the size.
//
//     PropertiesBenchmark [rounds]

#include <glib.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <limits>
#include <memory>
#include <string>

#include "settings/Properties.h"

namespace {

using dovrel::Properties;
using Seconds = std::chrono::duration<double>;

constexpr size_t kMegabyte = 1'000'000;
constexpr char kGroup[] = "settings";

struct Texts {
    std::string properties;
    std::string keyFile;
};

// The same entries in both forms, as long as the properties text is to be.
Texts textsOf(size_t size) {
    Texts texts;
    texts.keyFile = "[" + std::string(kGroup) + "]\n";
    for (unsigned n = 0; texts.properties.size() < size; ++n) {
        std::array<char, 32> key{};
        std::snprintf(key.data(), key.size(), "window.%08u.title", n);
        const std::string value = "The title of window number " + std::to_string(n) + " of this workspace";
        texts.properties.append("//").append(key.data()).append("\nSTR:").append(value).append("\n");
        texts.keyFile.append(key.data()).append("=").append(value).append("\n");
    }
    return texts;
}

struct KeyFileFree {
    void operator()(GKeyFile* file) const { g_key_file_free(file); }
};
using KeyFile = std::unique_ptr<GKeyFile, KeyFileFree>;

KeyFile loadedKeyFile(const std::string& text) {
    KeyFile file(g_key_file_new());
    if (!g_key_file_load_from_data(file.get(), text.data(), text.size(), G_KEY_FILE_NONE, nullptr)) std::abort();
    return file;
}

Properties loadedProperties(std::string& text) {
    Properties store;
    store.load(text, true);
    return store;
}

// The processor time of the shortest of several rounds: everything that disturbs a measurement makes it longer. What a
// round makes is taken down outside the time.
template <typename Make>
Seconds shortest(int rounds, Make make) {
    Seconds best(std::numeric_limits<double>::max());
    for (int i = 0; i < rounds; ++i) {
        const std::clock_t begin = std::clock();
        const auto made = make();
        best = std::min(best, Seconds(static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC));
    }
    return best;
}

struct Times {
    Seconds load, save, peerLoad, peerSave;
};

Times measured(size_t size, int rounds) {
    Texts texts = textsOf(size);
    const Properties store = loadedProperties(texts.properties);
    const KeyFile file = loadedKeyFile(texts.keyFile);
    Times times{};
    times.load = shortest(rounds, [&] { return loadedProperties(texts.properties); });
    times.peerLoad = shortest(rounds, [&] { return loadedKeyFile(texts.keyFile); });
    times.save = shortest(rounds, [&] {
        std::string text;
        store.save(text);
        return text;
    });
    times.peerSave = shortest(rounds, [&] {
        return std::unique_ptr<char, decltype(&g_free)>(g_key_file_to_data(file.get(), nullptr, nullptr), g_free);
    });
    return times;
}

void printRow(const char* what, size_t size, Seconds ours, Seconds peer) {
    const double megabytes = static_cast<double>(size) / kMegabyte;
    std::printf("%-5s %5.0f MB   %9.1f ms  %7.0f MB/s   GKeyFile %9.1f ms  %7.0f MB/s   %5.2f x\n", what, megabytes,
                ours.count() * 1e3, megabytes / ours.count(), peer.count() * 1e3, megabytes / peer.count(),
                peer / ours);
}

}  // namespace

int main(int argumentCount, char** arguments) {
    const int rounds = argumentCount > 1 ? std::max(1, std::atoi(arguments[1])) : 5;
    const Times small = measured(10 * kMegabyte, rounds);
    const Times large = measured(100 * kMegabyte, rounds);
    printRow("load", 10 * kMegabyte, small.load, small.peerLoad);
    printRow("load", 100 * kMegabyte, large.load, large.peerLoad);
    printRow("save", 10 * kMegabyte, small.save, small.peerSave);
    printRow("save", 100 * kMegabyte, large.save, large.peerSave);
    std::printf("ten times the size takes: load %.1f x, save %.1f x the time\n", large.load / small.load,
                large.save / small.save);
}
