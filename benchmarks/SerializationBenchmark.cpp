// Compares structured blocks with code for one record and with FlatBuffers, in one program. Also measures how
// the time for the table of parts and for byte array lists grows with their size.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>
#include <vector>

#include "CallMethod.h"
#include "HandWrittenCodec.h"
#include "StructuredCodec.h"
#include "serialization/ByteArrayList.h"
#include "serialization/StructuredByteArrayWriter.h"
#ifdef DOVREL_HAVE_FLATBUFFERS
#include "FlatBuffersCodec.h"
#endif

namespace {

using namespace dovrel;
using namespace dovrel::benchmarks;

CallMethodFields emptyFields(const CallMethodFields& like) {
    CallMethodFields fields;
    fields.payload.resize(like.payload.size());
    return fields;
}

template <class Codec>
bool carries(const CallMethodFields& fields) {
    typename Codec::Bytes bytes;
    CallMethodFields back = emptyFields(fields);
    Codec::build(fields, bytes);
    return Codec::read(bytes, back) && sameFields(fields, back);
}

// Makes the bytes anew for each call, as the library does for each request.
template <class Codec>
void buildAndRead(benchmark::State& state) {
    const CallMethodFields fields = sampleCall(static_cast<uint32_t>(state.range(0)));
    CallMethodFields back = emptyFields(fields);
    if (!carries<Codec>(fields)) return state.SkipWithError("does not carry the fields");
    for (auto _ : state) {
        typename Codec::Bytes bytes;
        Codec::build(fields, bytes);
        benchmark::DoNotOptimize(&bytes);
        benchmark::ClobberMemory();
        Codec::read(bytes, back);
        benchmark::DoNotOptimize(&back);
        benchmark::ClobberMemory();
    }
}

template <class Codec>
void build(benchmark::State& state) {
    const CallMethodFields fields = sampleCall(static_cast<uint32_t>(state.range(0)));
    for (auto _ : state) {
        typename Codec::Bytes bytes;
        Codec::build(fields, bytes);
        benchmark::DoNotOptimize(&bytes);
        benchmark::ClobberMemory();
    }
}

template <class Codec>
void read(benchmark::State& state) {
    const CallMethodFields fields = sampleCall(static_cast<uint32_t>(state.range(0)));
    CallMethodFields back = emptyFields(fields);
    typename Codec::Bytes bytes;
    Codec::build(fields, bytes);
    for (auto _ : state) {
        benchmark::DoNotOptimize(&bytes);
        Codec::read(bytes, back);
        benchmark::DoNotOptimize(&back);
        benchmark::ClobberMemory();
    }
}

#define CODEC_BENCHMARKS(Codec)                                  \
    BENCHMARK_TEMPLATE(buildAndRead, Codec)->Arg(64)->Arg(4096); \
    BENCHMARK_TEMPLATE(build, Codec)->Arg(64)->Arg(4096);        \
    BENCHMARK_TEMPLATE(read, Codec)->Arg(64)->Arg(4096)

CODEC_BENCHMARKS(HandWrittenCodec);
CODEC_BENCHMARKS(StructuredCodec);
#ifdef DOVREL_HAVE_FLATBUFFERS
CODEC_BENCHMARKS(FlatBuffersCodec);

void buildAndReadReusedFlatBuffersBuilder(benchmark::State& state) {
    const CallMethodFields fields = sampleCall(static_cast<uint32_t>(state.range(0)));
    CallMethodFields back = emptyFields(fields);
    FlatBuffersCodec::Bytes builder;
    for (auto _ : state) {
        FlatBuffersCodec::build(fields, builder);
        benchmark::ClobberMemory();
        FlatBuffersCodec::read(builder, back);
        benchmark::DoNotOptimize(&back);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(buildAndReadReusedFlatBuffersBuilder)->Arg(64)->Arg(4096);
#endif

// Returns a block with `count` parts of 4 bytes and tags in random order.
CPPExpandingByteArray blockOfParts(uint32_t count) {
    std::vector<uint32_t> tags(count);
    for (uint32_t i = 0; i < count; ++i)
        tags[i] = i;
    std::shuffle(tags.begin(), tags.end(), std::mt19937(1));
    CPPExpandingByteArray block;
    StructuredByteArrayWriter writer;
    writer.initialize(block, 9);
    for (const uint32_t tag : tags)
        writer.writeUInt32Part(tag, tag);
    return block;
}

void parseParts(benchmark::State& state) {
    const CPPExpandingByteArray block = blockOfParts(static_cast<uint32_t>(state.range(0)));
    for (auto _ : state) {
        StructuredByteArrayReader reader;
        reader.initialize(&block);
        benchmark::DoNotOptimize(reader.hasPart(0));
    }
    state.SetComplexityN(state.range(0));
}
BENCHMARK(parseParts)->RangeMultiplier(10)->Range(10000, 1000000)->Complexity(benchmark::oNLogN);

std::vector<CPPByteArray> makeList(uint32_t count) {
    std::vector<CPPByteArray> list(count);
    for (uint32_t i = 0; i < count; ++i)
        list[i].setFilled(16, static_cast<uint8_t>(i));
    return list;
}

void writeList(benchmark::State& state) {
    const std::vector<CPPByteArray> list = makeList(static_cast<uint32_t>(state.range(0)));
    for (auto _ : state) {
        CPPExpandingByteArray block;
        writeByteArrayList(list, block);
        benchmark::DoNotOptimize(block.data());
    }
    state.SetComplexityN(state.range(0));
}
BENCHMARK(writeList)->RangeMultiplier(10)->Range(10000, 1000000)->Complexity(benchmark::oN);

void readList(benchmark::State& state) {
    CPPExpandingByteArray block;
    writeByteArrayList(makeList(static_cast<uint32_t>(state.range(0))), block);
    for (auto _ : state) {
        std::vector<CPPByteArray> list;
        readByteArrayList(block, list);
        benchmark::DoNotOptimize(list.data());
    }
    state.SetComplexityN(state.range(0));
}
BENCHMARK(readList)->RangeMultiplier(10)->Range(10000, 1000000)->Complexity(benchmark::oN);

}  // namespace
