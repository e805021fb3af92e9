// From errors of COM objects to those of the store.
#pragma once

#include "platform/win32/comObject.h"
#include "store/connection.h"

#include <utility>

namespace vellums {

// Runs the work; sentence and number of whoever refused travel on unchanged.
template <typename Work>
auto throughCom(Work&& work)
{
    try {
        return std::forward<Work>(work)();
    } catch (const platform::ComError& e) {
        throw ProviderError(e.description, e.number);
    }
}

} // namespace vellums
