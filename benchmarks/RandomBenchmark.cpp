// Compares the random sources with the standard library's engine and with the system's
// cryptographic library, in one program.

#include <benchmark/benchmark.h>

#include <array>
#include <cstring>
#include <random>

#include "platform/random/MD5.h"
#include "platform/random/MD5Random.h"
#include "platform/random/NumberGenerator.h"
#ifdef DOVREL_HAVE_OPENSSL
#define OPENSSL_SUPPRESS_DEPRECATED
#include <openssl/md5.h>
#endif

namespace {

using dovrel::MD5;
using dovrel::NumberGenerator;

// One iteration draws several generations of the state, so that the cost of
// regenerating it is fully included.
constexpr int kDraws = 624 * 8;

template <class Draw>
void draw(benchmark::State& state, Draw next) {
    for (auto _ : state) {
        for (int i = 0; i < kDraws; ++i)
            benchmark::DoNotOptimize(next());
    }
    state.SetItemsProcessed(state.iterations() * kDraws);
}

void numberGenerator(benchmark::State& state) {
    NumberGenerator::seed(4357);
    draw(state, [] { return NumberGenerator::next(); });
}
BENCHMARK(numberGenerator)->Name("Twister/NumberGenerator");

void standardEngine(benchmark::State& state) {
    std::mt19937 engine(4357);
    draw(state, [&engine] { return engine(); });
}
BENCHMARK(standardEngine)->Name("Twister/std::mt19937");

// 16 bytes, the size of the random source's pool. Each digest is the next message.
using Pool = MD5::Digest;

template <class DigestOf>
void digestPools(benchmark::State& state, DigestOf computeDigest) {
    Pool pool{};
    for (auto _ : state)
        pool = computeDigest(pool);
    benchmark::DoNotOptimize(pool);
    state.SetItemsProcessed(state.iterations());
}

Pool ownDigest(const Pool& pool) {
    MD5 md5;
    md5.update(pool.data(), pool.size());
    return md5.digest();
}

void ownMD5(benchmark::State& state) {
    digestPools(state, ownDigest);
}
BENCHMARK(ownMD5)->Name("MD5 of 16 bytes/MD5");

void randomWords(benchmark::State& state) {
    dovrel::MD5Random random;
    random.seed(1);
    for (auto _ : state)
        benchmark::DoNotOptimize(random.next32());
}
BENCHMARK(randomWords)->Name("MD5 of 16 bytes/MD5Random::next32");

#ifdef DOVREL_HAVE_OPENSSL

// Calls the three MD5 functions directly, without the library's table of algorithms.
Pool systemDigest(const Pool& pool) {
    MD5_CTX context;
    Pool digest;
    MD5_Init(&context);
    MD5_Update(&context, pool.data(), pool.size());
    MD5_Final(digest.data(), &context);
    return digest;
}

void systemMD5(benchmark::State& state) {
    const Pool pool{1, 2, 3};
    if (systemDigest(pool) != ownDigest(pool)) return state.SkipWithError("the two digests differ");
    digestPools(state, systemDigest);
}
BENCHMARK(systemMD5)->Name("MD5 of 16 bytes/libcrypto");

#endif

}  // namespace
