#include "store/connection.h"

#include "text/decimal.h"

namespace vellums {

std::u16string reasonOf(const ProviderError& error)
{
    return error.description + u" (" + text::decimal(error.number) + u")";
}

} // namespace vellums
