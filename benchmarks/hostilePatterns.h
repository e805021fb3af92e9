// Patterns that engines which try one way after the other take minutes or years for.
#pragma once

namespace vellums::benchmarks {

// Searches 100,000 units with each pattern and prints the median time, compiling included, on the text
// that takes longest.
void measureHostilePatterns();

} // namespace vellums::benchmarks
