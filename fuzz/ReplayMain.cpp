// Runs a fuzzer's function on the files and folders named: no libFuzzer needed, any compiler will
// do.

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <vector>

#include "fuzz/Fuzzer.h"

namespace {

namespace fs = std::filesystem;

/// In an order that is the same everywhere.
std::vector<fs::path> inputsAt(const fs::path& place) {
    if (!fs::is_directory(place)) return {place};
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(place)) files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

bool replay(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    if (!in) {
        std::cerr << "Cannot read " << file << '\n';
        return false;
    }
    const std::vector<char> bytes((std::istreambuf_iterator<char>(in)), {});
    std::cerr << file.filename().string() << '\n';  // The last name tells the faulty input.
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    std::size_t count = 0;
    for (int i = 1; i < argc; ++i) {
        for (const auto& file : inputsAt(argv[i])) {
            if (!replay(file)) return 1;
            ++count;
        }
    }
    std::cerr << count << " inputs\n";
    return count > 0 ? 0 : 1;
}
