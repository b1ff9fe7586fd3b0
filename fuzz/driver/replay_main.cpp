// Replays fuzz inputs without libFuzzer: every file named on the command line,
// or every file in a named directory, goes once through the target.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

static void runFile(const std::filesystem::path &p) {
    std::ifstream in(p, std::ios::binary);
    std::vector<char> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t *>(bytes.data()), bytes.size());
}

int main(int argc, char **argv) {
    int count = 0;
    LLVMFuzzerTestOneInput(nullptr, 0);
    for (int i = 1; i < argc; ++i) {
        std::filesystem::path p(argv[i]);
        if (std::filesystem::is_directory(p)) {
            for (auto &e : std::filesystem::recursive_directory_iterator(p))
                if (e.is_regular_file()) {
                    runFile(e.path());
                    ++count;
                }
        } else if (std::filesystem::exists(p)) {
            runFile(p);
            ++count;
        }
    }
    std::printf("replayed %d inputs\n", count);
    return 0;
}
