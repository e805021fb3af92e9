#include "regexp/match/matcher.h"

namespace vellums::regexp {

Matcher::Matcher(const Program& program)
    : program_(program)
    , walk_(program)
    , guide_(program, walk_.width())
    , backtrack_(program)
{
}

} // namespace vellums::regexp
