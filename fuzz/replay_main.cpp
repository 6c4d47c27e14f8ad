// Runs a fuzz target over files, and over the files of folders, without libFuzzer: every build replays the seeds and
// the inputs that once failed. Arguments that begin with "--" are the target's own.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string_view>
#include <system_error>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
// a target may have one, which runs once ahead of all inputs
extern "C" __attribute__((weak)) int LLVMFuzzerInitialize(int* count, char*** arguments);

namespace {

namespace fs = std::filesystem;

bool CollectFiles(const fs::path& place, std::vector<fs::path>& files)
{
    std::error_code error;
    if (fs::is_regular_file(place, error)) {
        files.push_back(place);
        return true;
    }
    for (fs::recursive_directory_iterator it(place, error), end; !error && it != end; it.increment(error)) {
        std::error_code type_error;
        if (it->is_regular_file(type_error))
            files.push_back(it->path());
    }
    return !error;
}

bool Replay(const fs::path& file)
{
    std::ifstream in(file, std::ios::binary);
    const std::vector<char> content{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    if (!in.is_open() || in.bad())
        return false;

    // a block of exactly the content's size, so that a read past its end is one past the block
    const auto block = std::make_unique<std::uint8_t[]>(content.size());
    std::copy(content.begin(), content.end(), block.get());
    LLVMFuzzerTestOneInput(block.get(), content.size());
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    if (LLVMFuzzerInitialize)
        LLVMFuzzerInitialize(&argc, &argv);

    std::vector<fs::path> files;
    for (int i = 1; i < argc; ++i) {
        if (std::string_view(argv[i]).starts_with("--"))
            continue;
        if (!CollectFiles(argv[i], files)) {
            std::fprintf(stderr, "can't read %s\n", argv[i]);
            return 1;
        }
    }
    if (files.empty()) {
        std::fputs("no input: name files or folders\n", stderr);
        return 1;
    }
    std::sort(files.begin(), files.end());

    for (const fs::path& file : files) {
        // told before the run, so that a crash has a name
        std::fprintf(stderr, "%s\n", file.c_str());
        if (!Replay(file)) {
            std::fprintf(stderr, "can't read %s\n", file.c_str());
            return 1;
        }
    }
    std::printf("%zu inputs replayed\n", files.size());
    return 0;
}
