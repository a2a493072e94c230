// What the sample format converter costs: ten seconds of noise through each
// channel pair at two common rate pairs, next to a plain memcpy of the same
// input bytes, the floor that no conversion can beat. Counters: "frames/s"
// is input frames per second, "xRealTime" the seconds of audio per second.
#include <benchmark/benchmark.h>

#include <cstring>
#include <random>
#include <vector>

#include "audio/CAudioConverter.h"
#include "foundation/P.h"

namespace {

constexpr double kSeconds = 10.0;

std::vector<std::int16_t> noise(std::size_t samples)
{
    std::mt19937 random(42);
    std::uniform_int_distribution<int> sample(-32768, 32767);
    std::vector<std::int16_t> data(samples);
    for (auto& s : data) s = static_cast<std::int16_t>(sample(random));
    return data;
}

void setCounters(benchmark::State& state, std::int64_t frames, double inputRate)
{
    const auto iterations = static_cast<double>(state.iterations());
    state.counters["frames/s"] =
        benchmark::Counter(static_cast<double>(frames) * iterations, benchmark::Counter::kIsRate);
    state.counters["xRealTime"] =
        benchmark::Counter(static_cast<double>(frames) / inputRate * iterations, benchmark::Counter::kIsRate);
}

// Arguments: input rate, output rate, input channels, output channels.
void convert(benchmark::State& state)
{
    const auto inputRate = static_cast<double>(state.range(0));
    const auto outputRate = static_cast<double>(state.range(1));
    const auto inputChannels = static_cast<std::int32_t>(state.range(2));
    const auto outputChannels = static_cast<std::int32_t>(state.range(3));
    const auto frames = static_cast<std::int32_t>(inputRate * kSeconds);
    const auto room = static_cast<std::int32_t>(frames * outputRate / inputRate * 1.01) + 16;

    const std::vector<std::int16_t> input = noise(static_cast<std::size_t>(frames * inputChannels));
    std::vector<std::int16_t> output(static_cast<std::size_t>(room * outputChannels));
    auto converter = fenn::make<tbx::CAudioConverter>();
    converter->SetInputRate(inputRate);
    converter->SetOutputRate(outputRate);
    converter->SetInputChannels(inputChannels);
    converter->SetOutputChannels(outputChannels);

    for (auto _ : state) {
        converter->Reset();
        converter->SetInput(input.data(), frames);
        converter->SetOutput(output.data(), room);
        converter->Convert();
        converter->Drain();
        benchmark::DoNotOptimize(output.data());
        benchmark::ClobberMemory();
    }
    if (converter->GetInputFrames() != 0) state.SkipWithError("the output room was too small");
    setCounters(state, frames, inputRate);
}

// Arguments: input rate, channels.
void copy(benchmark::State& state)
{
    const auto inputRate = static_cast<double>(state.range(0));
    const auto channels = static_cast<std::int32_t>(state.range(1));
    const auto frames = static_cast<std::int32_t>(inputRate * kSeconds);
    const std::vector<std::int16_t> input = noise(static_cast<std::size_t>(frames * channels));
    std::vector<std::int16_t> output(input.size());

    for (auto _ : state) {
        std::memcpy(output.data(), input.data(), input.size() * sizeof(std::int16_t));
        benchmark::DoNotOptimize(output.data());
        benchmark::ClobberMemory();
    }
    setCounters(state, frames, inputRate);
}

}  // namespace

BENCHMARK(convert)
    ->ArgNames({"in", "out", "inCh", "outCh"})
    ->Args({48000, 44100, 1, 1})
    ->Args({48000, 44100, 1, 2})
    ->Args({48000, 44100, 2, 2})
    ->Args({48000, 44100, 2, 1})
    ->Args({22050, 44100, 1, 1})
    ->Args({22050, 44100, 1, 2})
    ->Args({22050, 44100, 2, 2})
    ->Args({22050, 44100, 2, 1})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(copy)
    ->ArgNames({"in", "ch"})
    ->Args({48000, 1})
    ->Args({48000, 2})
    ->Args({22050, 1})
    ->Args({22050, 2})
    ->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
