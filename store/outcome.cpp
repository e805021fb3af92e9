#include "store/outcome.h"

#include "platform/text.h"

namespace vellums {

void Outcome::failed(const std::u16string& line)
{
    if (failures_++ == 0)
        failure_ = line;
}

std::u16string Outcome::line(bool chinese) const
{
    if (failures_ == 0)
        return done_.empty() ? found_ : done_;
    if (failures_ == 1)
        return failure_;
    const std::u16string more = platform::decimal(static_cast<std::int64_t>(failures_ - 1));
    return failure_ + (chinese ? u" (另有 " + more + u" 项失败)" : u" (and " + more + u" more)");
}

} // namespace vellums
