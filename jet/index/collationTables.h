// The weights of every UTF-16 code unit in the two sort orders that can be encoded in full, packed.
// collationTables.cpp is generated; textWeights.h unpacks it.
//
// A table is a sequence of ranges that together cover 0000 to FFFF:
//
//   code units in the range less one, seven bits to a byte, low ones first, top bit: more follow
//   kind (low three bits: 0 ignored, 1 weight, 2 kana, 3 modifier, 4 punctuation, 5 unknown,
//         6 weight that moves every fourth unit) and step (high five bits)
//   kinds 1, 2, 6: one byte, length of P (low half) and of D (high half), then P and D;
//                  no D means one plain value
//   kinds 2, 3, 4: V
//
// P are primary weights, D diacritic values, V the kana flag, the modifier's value or the sign's.
#pragma once

#include <cstdint>
#include <span>

namespace vellums::jet {

std::span<const std::uint8_t> generalLegacyRanges();
std::span<const std::uint8_t> generalRanges();

} // namespace vellums::jet
