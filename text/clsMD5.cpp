// One pass over the blocks of 64 bytes; nothing is copied. A byte of the message is the low byte of a code
// unit. Behind the text stand one byte 0x80, zeros, and in the last eight bytes of the last block the length
// in bits, low byte first:
//
//   | text ... | 80 | 00 ... 00 | length in bits, 8 bytes |
//
// Nine bytes are needed behind the text at least, hence (size + 8) / 64 + 1 blocks.
#include "text/clsMD5.h"

#include <array>
#include <bit>
#include <cstdint>

namespace vellums::text {
namespace {

// 2^32 times the absolute sine of 1 to 64, cut to whole numbers.
constexpr std::array<std::uint32_t, 64> kSines = {0xd76aa478, 0xe8c7b756, 0x242070db, 0xc1bdceee, 0xf57c0faf,
    0x4787c62a, 0xa8304613, 0xfd469501, 0x698098d8, 0x8b44f7af, 0xffff5bb1, 0x895cd7be, 0x6b901122,
    0xfd987193, 0xa679438e, 0x49b40821, 0xf61e2562, 0xc040b340, 0x265e5a51, 0xe9b6c7aa, 0xd62f105d,
    0x02441453, 0xd8a1e681, 0xe7d3fbc8, 0x21e1cde6, 0xc33707d6, 0xf4d50d87, 0x455a14ed, 0xa9e3e905,
    0xfcefa3f8, 0x676f02d9, 0x8d2a4c8a, 0xfffa3942, 0x8771f681, 0x6d9d6122, 0xfde5380c, 0xa4beea44,
    0x4bdecfa9, 0xf6bb4b60, 0xbebfbc70, 0x289b7ec6, 0xeaa127fa, 0xd4ef3085, 0x04881d05, 0xd9d4d039,
    0xe6db99e5, 0x1fa27cf8, 0xc4ac5665, 0xf4292244, 0x432aff97, 0xab9423a7, 0xfc93a039, 0x655b59c3,
    0x8f0ccc92, 0xffeff47d, 0x85845dd1, 0x6fa87e4f, 0xfe2ce6e0, 0xa3014314, 0x4e0811a1, 0xf7537e82,
    0xbd3af235, 0x2ad7d2bb, 0xeb86d391};

constexpr int kShifts[4][4] = {{7, 12, 17, 22}, {5, 9, 14, 20}, {4, 11, 16, 23}, {6, 10, 15, 21}};

using Chain = std::array<std::uint32_t, 4>;
using Block = std::array<std::uint32_t, 16>;

// What one step mixes in: the round's function of three words, and which word of the block.
struct Mixed {
    std::uint32_t value;
    std::size_t word;
};

Mixed mixed(std::size_t step, std::uint32_t b, std::uint32_t c, std::uint32_t d)
{
    switch (step / 16) {
    case 0:
        return {(b & c) | (~b & d), step};
    case 1:
        return {(b & d) | (c & ~d), (5 * step + 1) % 16};
    case 2:
        return {b ^ c ^ d, (3 * step + 5) % 16};
    default:
        return {c ^ (b | ~d), (7 * step) % 16};
    }
}

void addBlock(Chain& chain, const Block& block)
{
    auto [a, b, c, d] = chain;
    for (std::size_t step = 0; step < 64; ++step) {
        const Mixed mix = mixed(step, b, c, d);
        const std::uint32_t sum = a + mix.value + block[mix.word] + kSines[step];
        a = d;
        d = c;
        c = b;
        b += std::rotl(sum, kShifts[step / 16][step % 4]);
    }
    chain = {chain[0] + a, chain[1] + b, chain[2] + c, chain[3] + d};
}

// The 64 bytes of the padded message from a position on: text, one byte 0x80, zeros.
Block blockAt(std::u16string_view text, std::size_t position)
{
    Block block{};
    for (std::size_t i = 0; i < 64 && position + i <= text.size(); ++i) {
        const std::uint32_t byte = position + i < text.size() ? text[position + i] & 0xFFu : 0x80u;
        block[i / 4] |= byte << (8 * (i % 4));
    }
    return block;
}

} // namespace

std::u16string clsMD5::MD5(std::u16string_view text) const
{
    Chain chain = {0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476};
    const std::size_t blocks = (text.size() + 8) / 64 + 1;
    for (std::size_t i = 0; i < blocks; ++i) {
        Block block = blockAt(text, i * 64);
        if (i + 1 == blocks) {
            const std::uint64_t bits = std::uint64_t{text.size()} << 3;
            block[14] = static_cast<std::uint32_t>(bits);
            block[15] = static_cast<std::uint32_t>(bits >> 32);
        }
        addBlock(chain, block);
    }
    std::u16string digits;
    for (const std::uint32_t word : chain) {
        // Bytes from the lowest on, the high half of each first.
        for (const int shift : {4, 0, 12, 8, 20, 16, 28, 24})
            digits.push_back(u"0123456789abcdef"[(word >> shift) & 15u]);
    }
    return digits;
}

} // namespace vellums::text
