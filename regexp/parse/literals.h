// Which plain texts a pattern needs: text without them is passed over unread.
#pragma once

#include "regexp/parse/tree.h"

#include <string>
#include <vector>

namespace vellums::regexp {

struct Literals {
    // Every match contains one of these; none known: empty. Folded where case does not count.
    std::vector<std::u16string> texts;
    bool whole = false; // every match is one of these, the first that fits, and nothing else is asked
};

Literals neededLiterals(const Tree& tree);

// How many of a thousand units of common text are this one, roughly; at least 1.
int commonness(char16_t unit);

} // namespace vellums::regexp
