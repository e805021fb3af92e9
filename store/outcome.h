// What a command did and what failed: the one line that is said when it is over.
#pragma once

#include <cstddef>
#include <string>

namespace vellums {

// Whom the routines tell what they did. Each line is whole and ready to be shown.
class StatusLine {
public:
    virtual ~StatusLine() = default;
    // Something went wrong. Never hidden by what is told later.
    virtual void failed(const std::u16string& line) = 0;
    // Something that the user should know beside what the command did.
    virtual void noticed(const std::u16string& line) = 0;
    // What was done, said by whoever the user called.
    virtual void done(const std::u16string& line) = 0;
    // How many records the list shows: said where there is nothing else to say.
    virtual void found(const std::u16string& line) = 0;
};

// Collects what is told while a command runs.
class Outcome : public StatusLine {
public:
    void failed(const std::u16string& line) override;
    void noticed(const std::u16string& line) override { notice_ = line; }
    void done(const std::u16string& line) override { done_ = line; }
    void found(const std::u16string& line) override { found_ = line; }

    bool hasFailed() const { return failures_ != 0; }
    bool isEmpty() const { return line(false).empty(); }
    // The first failure and how many more there were; else what was noticed, and what was done last or the
    // list's count; empty where nothing was told. The language is that of the words around the count of
    // failures.
    std::u16string line(bool chinese) const;

private:
    std::u16string failure_; // the first
    std::size_t failures_ = 0;
    std::u16string notice_;
    std::u16string done_;
    std::u16string found_;
};

} // namespace vellums
