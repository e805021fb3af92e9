// Whether the program is built with the address sanitizer, under which long tests try fewer cases.
#pragma once

namespace vellums::tests {

#ifdef __SANITIZE_ADDRESS__
inline constexpr bool kSanitized = true;
#else
inline constexpr bool kSanitized = false;
#endif

} // namespace vellums::tests
