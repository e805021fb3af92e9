// Runs a target without a fuzzer.
//
//   TARGET FILE|FOLDER...     runs it over saved inputs
//   TARGET --lines FILE       the same; each line is an input in hexadecimal digits
//   TARGET --pack FOLDER      prints the inputs of a folder as such lines
//   TARGET --mutate COUNT     runs it over its seeds and COUNT changed ones, the same at every run
//   TARGET --seeds FOLDER     writes the seeds for a fuzzer to begin with
#include "fuzz/target.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <set>

namespace vellums::fuzz {
namespace {

namespace fs = std::filesystem;

void runOne(const std::string& input)
{
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
}

class Mutator {
public:
    explicit Mutator(std::vector<std::string> inputs)
        : inputs_(std::move(inputs))
    {
    }

    std::string next()
    {
        std::string input = inputs_[below(inputs_.size())];
        for (std::size_t changes = 1 + below(4); changes > 0; --changes)
            change(input);
        return input;
    }

private:
    std::size_t below(std::size_t limit) { return limit == 0 ? 0 : random_() % limit; }

    // Files are made of pages whose heads say what lies where, so half of the places lie there.
    std::size_t place(const std::string& input)
    {
        constexpr std::size_t kPage = 4096;
        constexpr std::size_t kHead = 64;
        const std::size_t anywhere = below(input.size() + 1);
        if (below(2) == 0)
            return anywhere;
        return std::min(anywhere / kPage * kPage + below(kHead), input.size());
    }

    void change(std::string& input)
    {
        constexpr unsigned char kValues[] = {0x00, 0x01, 0x7F, 0x80, 0xFE, 0xFF};
        const std::size_t at = place(input);
        const std::size_t length = std::min(1 + below(below(4) == 0 ? 4096 : 8), input.size() - at);
        const std::string& other = inputs_[below(inputs_.size())];
        const std::size_t from = place(other);
        switch (below(6)) {
        case 0:
            input.erase(at, length);
            break;
        case 1:
            input.insert(at, other, from, 1 + below(40));
            break;
        case 2:
            input.replace(at, length, other, from, length);
            break;
        case 3:
            for (std::size_t i = at; i < at + length; ++i)
                input[i] = static_cast<char>(kValues[below(std::size(kValues))]);
            break;
        case 4:
            input.resize(below(4) == 0 ? at : input.size());
            break;
        default:
            if (at < input.size())
                input[at] = static_cast<char>(random_());
        }
    }

    std::vector<std::string> inputs_;
    std::mt19937 random_{20240305};
};

std::string bytesOf(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// The input is kept beside the program while it runs, so that one that ends it can be had.
void mutate(unsigned long count)
{
    for (const std::string& seed : seeds())
        runOne(seed);
    Mutator mutator(seeds());
    const std::u16string kept = workFile(u"last-input");
    for (unsigned long i = 0; i < count; ++i) {
        const std::string input = mutator.next();
        writeWorkFile(kept, input.data(), input.size());
        runOne(input);
    }
    std::printf("%lu inputs\n", count);
}

void writeSeeds(const fs::path& folder)
{
    fs::create_directories(folder);
    int number = 0;
    for (const std::string& seed : seeds())
        std::ofstream(folder / std::to_string(number++), std::ios::binary) << seed;
}

void replay(const fs::path& path)
{
    if (!fs::is_directory(path))
        return runOne(bytesOf(path));
    for (const auto& entry : fs::recursive_directory_iterator(path))
        if (entry.is_regular_file())
            runOne(bytesOf(entry.path()));
}

std::string fromDigits(const std::string& line)
{
    require(line.size() % 2 == 0 && line.find_first_not_of("0123456789abcdef") == line.npos,
        "a line is no row of hexadecimal digits");
    std::string bytes;
    for (std::size_t i = 0; i < line.size(); i += 2)
        bytes += static_cast<char>(std::stoi(line.substr(i, 2), nullptr, 16));
    return bytes;
}

void replayLines(const fs::path& path)
{
    std::ifstream file(path);
    std::size_t count = 0;
    for (std::string line; std::getline(file, line); ++count)
        runOne(fromDigits(line));
    require(count > 0, "no inputs were found");
    std::printf("%zu inputs\n", count);
}

// In the order of the lines themselves, so that few of them change when inputs are added.
void pack(const fs::path& folder)
{
    std::set<std::string> lines;
    for (const auto& entry : fs::directory_iterator(folder)) {
        std::string line;
        for (const char byte : bytesOf(entry.path())) {
            constexpr std::string_view kDigits = "0123456789abcdef";
            line += kDigits[static_cast<unsigned char>(byte) / 16];
            line += kDigits[static_cast<unsigned char>(byte) % 16];
        }
        lines.insert(line);
    }
    for (const std::string& line : lines)
        std::printf("%s\n", line.c_str());
}

} // namespace
} // namespace vellums::fuzz

int main(int count, char** arguments)
{
    using namespace vellums;
    const std::vector<std::string> words(arguments + 1, arguments + count);
    if (words.size() == 2 && words[0] == "--mutate")
        fuzz::mutate(std::strtoul(words[1].c_str(), nullptr, 10));
    else if (words.size() == 2 && words[0] == "--seeds")
        fuzz::writeSeeds(words[1]);
    else if (words.size() == 2 && words[0] == "--lines")
        fuzz::replayLines(words[1]);
    else if (words.size() == 2 && words[0] == "--pack")
        fuzz::pack(words[1]);
    else
        for (const std::string& word : words)
            fuzz::replay(word);
    return 0;
}
