// Loading and saving the text form of properties, beside the nearest thing that is at hand everywhere: the
// key files of GLib. Both hold the same entries; the argument is the size of the properties text in
// megabytes, and so is the rate of both.

#include <benchmark/benchmark.h>
#include <glib.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include "settings/Properties.h"

namespace {

constexpr size_t kMegabyte = 1'000'000;

struct Texts {
    std::string properties;
    std::string keyFile = "[settings]\n";
};

Texts textsOf(size_t size) {
    Texts texts;
    for (unsigned n = 0; texts.properties.size() < size; ++n) {
        std::array<char, 32> key{};
        std::snprintf(key.data(), key.size(), "window.%08u.title", n);
        const std::string value = "The title of window number " + std::to_string(n) + " of this workspace";
        texts.properties.append("//").append(key.data()).append("\nSTR:").append(value).append("\n");
        texts.keyFile.append(key.data()).append("=").append(value).append("\n");
    }
    return texts;
}

struct PropertiesText {
    using Store = dovrel::Properties;
    using Text = std::string;

    static std::unique_ptr<Store> load(Texts& texts) {
        auto store = std::make_unique<Store>();
        store->load(texts.properties, true);
        return store;
    }
    static std::unique_ptr<Text> save(Store& store) {
        auto text = std::make_unique<Text>();
        store.save(*text);
        return text;
    }
};

struct GLibKeyFile {
    struct Free {
        void operator()(GKeyFile* file) const { g_key_file_free(file); }
        void operator()(char* text) const { g_free(text); }
    };

    static std::unique_ptr<GKeyFile, Free> load(Texts& texts) {
        std::unique_ptr<GKeyFile, Free> file(g_key_file_new());
        const std::string& text = texts.keyFile;
        if (!g_key_file_load_from_data(file.get(), text.data(), text.size(), G_KEY_FILE_NONE, nullptr)) {
            std::abort();
        }
        return file;
    }
    static std::unique_ptr<char, Free> save(GKeyFile& file) {
        return std::unique_ptr<char, Free>(g_key_file_to_data(&file, nullptr, nullptr));
    }
};

// What a round makes is taken down outside the time.
template <class Make>
void measure(benchmark::State& state, size_t size, Make make) {
    for (auto _ : state) {
        auto made = make();
        benchmark::DoNotOptimize(made.get());
        state.PauseTiming();
        made.reset();
        state.ResumeTiming();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(size));
}

template <class Form>
void load(benchmark::State& state) {
    Texts texts = textsOf(static_cast<size_t>(state.range(0)) * kMegabyte);
    measure(state, texts.properties.size(), [&] { return Form::load(texts); });
}

template <class Form>
void save(benchmark::State& state) {
    Texts texts = textsOf(static_cast<size_t>(state.range(0)) * kMegabyte);
    const auto store = Form::load(texts);
    measure(state, texts.properties.size(), [&] { return Form::save(*store); });
}

BENCHMARK_TEMPLATE(load, PropertiesText)->Arg(10)->Arg(100)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(load, GLibKeyFile)->Arg(10)->Arg(100)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(save, PropertiesText)->Arg(10)->Arg(100)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(save, GLibKeyFile)->Arg(10)->Arg(100)->Unit(benchmark::kMillisecond);

}  // namespace
