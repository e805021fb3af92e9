// Another program holds the clipboard.
#pragma once

#include <memory>

namespace vellums::tests {

// From its construction to its end nobody else gets at the clipboard.
class HeldClipboard {
public:
    HeldClipboard();
    HeldClipboard(const HeldClipboard&) = delete;
    HeldClipboard& operator=(const HeldClipboard&) = delete;
    ~HeldClipboard();

private:
    struct Holder;
    std::unique_ptr<Holder> holder_;
};

} // namespace vellums::tests
