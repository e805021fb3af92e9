#include "store/outcome.h"

#include "text/decimal.h"

namespace vellums {

// What fails for the same reason one level higher is the same failure with a name before it.
void Outcome::failed(const std::u16string& line)
{
    const bool sameReason = failures_ == 1 && line.size() > failure_.size() && line.ends_with(failure_);
    if (failures_ == 0 || sameReason)
        failure_ = line;
    if (!sameReason)
        ++failures_;
}

std::u16string Outcome::line(bool chinese) const
{
    if (failures_ == 0) {
        const std::u16string& rest = done_.empty() ? found_ : done_;
        return notice_.empty() || rest.empty() ? notice_ + rest : notice_ + u"  " + rest;
    }
    if (failures_ == 1)
        return failure_;
    const std::u16string more = text::decimal(static_cast<std::int64_t>(failures_ - 1));
    return failure_ + (chinese ? u" (另有 " + more + u" 项失败)" : u" (and " + more + u" more)");
}

} // namespace vellums
