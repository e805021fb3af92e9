// Errors of the engine, with the sentence and the number that the providers of Access files use for
// the same failure.
#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <utility>

namespace vellums::jet {

// Thrown by every part of the engine. `number` is what Err.Number shows for the same failure: the
// HRESULT as a signed number. `native` is the engine's own four-digit number, 0 where there is none.
struct Error : std::exception {
    Error(int nativeNumber, std::int32_t errNumber, std::u16string text)
        : native(nativeNumber)
        , number(errNumber)
        , description(std::move(text))
    {
    }
    const char* what() const noexcept override { return "jet::Error"; }

    int native;
    std::int32_t number;
    std::u16string description; // ready to show
};

// HRESULTs as signed numbers.
inline constexpr std::int32_t kFail = -2147467259;             // 80004005
inline constexpr std::int32_t kErrorsInCommand = -2147217900;  // 80040E14
inline constexpr std::int32_t kNoTable = -2147217865;          // 80040E37
inline constexpr std::int32_t kParamNotOptional = -2147217904; // 80040E10
inline constexpr std::int32_t kCantConvertValue = -2147217913; // 80040E07
inline constexpr std::int32_t kDataOverflow = -2147217833;     // 80040E57
inline constexpr std::int32_t kErrorsOccurred = -2147217887;   // 80040E21
inline constexpr std::int32_t kPermissionDenied = -2147217911; // 80040E09
inline constexpr std::int32_t kAuthFailed = -2147217843;       // 80040E4D
inline constexpr std::int32_t kCanceled = -2147217842;         // 80040E4E
inline constexpr std::int32_t kDuplicateSource = -2147217897;  // 80040E17
inline constexpr std::int32_t kDuplicateTable = -2147217857;   // 80040E3F

// The file breaks a rule of its format. The detail says where; it goes into `description` behind the
// providers' sentence about damaged files.
[[noreturn]] void throwDamaged(const std::u16string& detail);
[[noreturn]] void throwDiskFailed(); // 3043
// The statement or the table needs something that this engine does not do. Never guessed at.
[[noreturn]] void throwUnsupported(const std::u16string& sentence);
[[noreturn]] void throwTypeMismatch();                                                             // 3464
[[noreturn]] void throwFieldTooSmall();                                                            // 3163
[[noreturn]] void throwDuplicateKey();                                                             // 3022
[[noreturn]] void throwInRelationship();                                                           // 3281
[[noreturn]] void throwNullNotAllowed(const std::u16string& table, const std::u16string& column);  // 3314
[[noreturn]] void throwEmptyNotAllowed(const std::u16string& table, const std::u16string& column); // 3315

} // namespace vellums::jet
