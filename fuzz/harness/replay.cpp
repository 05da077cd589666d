// SPDX-License-Identifier: MIT
// REPLAY FOLDER: runs a target with every file of a folder, for compilers without libFuzzer.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size);

int main(int count, char** arguments) {
    if (count != 2) {
        std::fprintf(stderr, "usage: %s FOLDER\n", arguments[0]);
        return 2;
    }
    unsigned inputs = 0;
    for (auto const& entry : std::filesystem::directory_iterator(arguments[1])) {
        std::printf("%s\n", entry.path().filename().c_str());
        std::fflush(stdout); // the last name is that of the input that failed
        std::ifstream file(entry.path(), std::ios::binary);
        std::vector<char> bytes(std::istreambuf_iterator<char>(file), {});
        bytes.shrink_to_fit(); // a read past the end is a read past the memory
        LLVMFuzzerTestOneInput(reinterpret_cast<std::uint8_t const*>(bytes.data()), bytes.size());
        ++inputs;
    }
    std::printf("%u inputs\n", inputs);
    return inputs > 0 ? 0 : 1;
}
