// What the code-point walk of String costs against plain byte work: find and
// compareNoCase on 10 MB of UTF-8, next to std::string_view::find and a plain
// loop over the same bytes.
#include <benchmark/benchmark.h>

#include <cctype>
#include <string>
#include <string_view>

#include "foundation/String.h"

namespace {

constexpr std::size_t kTextSize = 10 * 1024 * 1024;

// Mostly ASCII with a sprinkling of two-byte letters, the needle at the end.
const std::string& haystack()
{
    static const std::string text = [] {
        std::string built;
        built.reserve(kTextSize);
        while (built.size() + 16 < kTextSize) built += "Lorem ipsum d\xC3\xB6lor ";
        built += "needle-at-the-end";
        return built;
    }();
    return text;
}

void findWithString(benchmark::State& state)
{
    const fenn::String text = fenn::String::copyOf(haystack());
    const fenn::String needle("needle-at-the-end");
    for (auto _ : state) benchmark::DoNotOptimize(text.find(needle));
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * haystack().size()));
}

void findWithStringNoCase(benchmark::State& state)
{
    const fenn::String text = fenn::String::copyOf(haystack());
    const fenn::String needle("NEEDLE-AT-THE-END");
    for (auto _ : state) benchmark::DoNotOptimize(text.findNoCase(needle));
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * haystack().size()));
}

void findWithStringView(benchmark::State& state)
{
    const std::string_view text = haystack();
    for (auto _ : state) benchmark::DoNotOptimize(text.find("needle-at-the-end"));
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * haystack().size()));
}

void findWithPlainLoop(benchmark::State& state)
{
    const std::string& text = haystack();
    const std::string_view needle = "needle-at-the-end";
    for (auto _ : state) {
        std::size_t hit = std::string::npos;
        for (std::size_t i = 0; i + needle.size() <= text.size() && hit == std::string::npos; ++i) {
            std::size_t j = 0;
            while (j < needle.size() && text[i + j] == needle[j]) ++j;
            if (j == needle.size()) hit = i;
        }
        benchmark::DoNotOptimize(hit);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * text.size()));
}

void compareNoCaseWithString(benchmark::State& state)
{
    std::string upper = haystack();
    for (char& c : upper) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    const fenn::String a = fenn::String::copyOf(haystack());
    const fenn::String b = fenn::String::copyOf(upper);
    for (auto _ : state) benchmark::DoNotOptimize(a.compareNoCase(b));
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * haystack().size()));
}

void compareNoCaseWithPlainLoop(benchmark::State& state)
{
    std::string upper = haystack();
    for (char& c : upper) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    const std::string& lower = haystack();
    for (auto _ : state) {
        int result = 0;
        for (std::size_t i = 0; i < lower.size() && result == 0; ++i) {
            const int a = std::tolower(static_cast<unsigned char>(lower[i]));
            const int b = std::tolower(static_cast<unsigned char>(upper[i]));
            result = a < b ? -1 : (a > b ? 1 : 0);
        }
        benchmark::DoNotOptimize(result);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * lower.size()));
}

}  // namespace

BENCHMARK(findWithString)->Unit(benchmark::kMillisecond);
BENCHMARK(findWithStringNoCase)->Unit(benchmark::kMillisecond);
BENCHMARK(findWithStringView)->Unit(benchmark::kMillisecond);
BENCHMARK(findWithPlainLoop)->Unit(benchmark::kMillisecond);
BENCHMARK(compareNoCaseWithString)->Unit(benchmark::kMillisecond);
BENCHMARK(compareNoCaseWithPlainLoop)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
