#include "search/regExpMatcher.h"

namespace vellums::regexp {

Matcher::Matcher(const Program& program)
    : program_(program)
    , guide_(program)
    , walk_(program)
    , backtrack_(program)
{
}

} // namespace vellums::regexp
