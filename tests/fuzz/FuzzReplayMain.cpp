#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

// Runs a fuzz target's entry over the files named on the command line and
// over every file below the folders named there, in name order, so that a
// normal build replays the corpus and any crash file that a fuzzer found.
// With no inputs the entry runs once on empty input. The fuzz target
// reports a failure by crashing; a clean run returns 0.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char** argv)
{
    namespace fs = std::filesystem;
    std::vector<fs::path> inputs;
    for (int index = 1; index < argc; ++index) {
        const fs::path argument = argv[index];
        if (fs::is_directory(argument)) {
            for (const auto& entry : fs::recursive_directory_iterator(argument)) {
                if (entry.is_regular_file()) inputs.push_back(entry.path());
            }
        } else if (fs::is_regular_file(argument)) {
            inputs.push_back(argument);
        } else {
            std::fprintf(stderr, "No such input: %s\n", argument.c_str());
            return 2;
        }
    }
    std::sort(inputs.begin(), inputs.end());

    if (inputs.empty()) {
        LLVMFuzzerTestOneInput(nullptr, 0);
        std::printf("Ran the empty input.\n");
        return 0;
    }
    for (const fs::path& input : inputs) {
        std::ifstream in(input, std::ios::binary);
        const std::vector<char> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    }
    std::printf("Ran %zu inputs.\n", inputs.size());
    return 0;
}
