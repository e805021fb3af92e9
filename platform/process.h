// This process among others.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace vellums::platform {

// Tells files apart that several runs of the tests leave in one folder.
std::uint32_t processId();

// The claim to be the only running program of an executable path, held while the object lives. Ends
// with the process, however that ends.
class SingleInstance {
public:
    explicit SingleInstance(const std::u16string& executable);
    SingleInstance(SingleInstance&&) noexcept;
    SingleInstance& operator=(SingleInstance&&) noexcept;
    ~SingleInstance();

    bool first() const; // false: another one runs already

private:
    struct Claim;
    std::unique_ptr<Claim> claim_;
};

} // namespace vellums::platform
