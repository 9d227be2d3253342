// Compares loading and saving the text form of properties with the key files of GLib, the most similar format
// that is available everywhere. Both contain the same entries. The argument is the size of the properties
// text in megabytes, and both rates are computed from that size.

#include <benchmark/benchmark.h>
#include <glib.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include "settings/Properties.h"

namespace {

using dovrel::Properties;

constexpr size_t kMegabyte = 1'000'000;

struct Texts {
    std::string properties;
    std::string keyFile = "[settings]\n";
};

Texts toTexts(size_t size) {
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
    static const std::string& of(const Texts& texts) { return texts.properties; }
    static std::unique_ptr<Properties> load(std::string& text) {
        auto store = std::make_unique<Properties>();
        store->load(text, false);
        return store;
    }
    static std::unique_ptr<std::string> save(Properties& store) {
        auto text = std::make_unique<std::string>();
        store.save(*text);
        return text;
    }
};

struct PropertiesTextThroughCursor : PropertiesText {
    static std::unique_ptr<Properties> load(std::string& text) {
        auto store = std::make_unique<Properties>();
        store->load(text, true);
        return store;
    }
};

struct GLibKeyFile {
    struct Free {
        void operator()(GKeyFile* file) const { g_key_file_free(file); }
        void operator()(char* text) const { g_free(text); }
    };

    static const std::string& of(const Texts& texts) { return texts.keyFile; }
    static std::unique_ptr<GKeyFile, Free> load(std::string& text) {
        std::unique_ptr<GKeyFile, Free> file(g_key_file_new());
        if (!g_key_file_load_from_data(file.get(), text.data(), text.size(), G_KEY_FILE_NONE, nullptr)) {
            std::abort();
        }
        return file;
    }
    static std::unique_ptr<char, Free> save(GKeyFile& file) {
        return std::unique_ptr<char, Free>(g_key_file_to_data(&file, nullptr, nullptr));
    }
};

size_t toSize(const benchmark::State& state) {
    return static_cast<size_t>(state.range(0)) * kMegabyte;
}

void showRate(benchmark::State& state) {
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(toSize(state)));
}

// Measures only the loading. Making the text and destroying the store are not measured.
template <class Form>
void load(benchmark::State& state) {
    const Texts texts = toTexts(toSize(state));
    for (auto _ : state) {
        state.PauseTiming();
        std::string text = Form::of(texts);
        state.ResumeTiming();
        auto store = Form::load(text);
        benchmark::DoNotOptimize(store.get());
        state.PauseTiming();
        store.reset();
        text = std::string();
        state.ResumeTiming();
    }
    showRate(state);
}

template <class Form>
void save(benchmark::State& state) {
    std::string text = Form::of(toTexts(toSize(state)));
    const auto store = Form::load(text);
    for (auto _ : state) {
        auto saved = Form::save(*store);
        benchmark::DoNotOptimize(saved.get());
        state.PauseTiming();
        saved.reset();
        state.ResumeTiming();
    }
    showRate(state);
}

#define FORM_BENCHMARK(work, Form) \
    BENCHMARK_TEMPLATE(work, Form)->Arg(10)->Arg(100)->Unit(benchmark::kMillisecond)

FORM_BENCHMARK(load, PropertiesText);
FORM_BENCHMARK(load, PropertiesTextThroughCursor);
FORM_BENCHMARK(load, GLibKeyFile);
FORM_BENCHMARK(save, PropertiesText);
FORM_BENCHMARK(save, PropertiesTextThroughCursor);
FORM_BENCHMARK(save, GLibKeyFile);

}  // namespace
