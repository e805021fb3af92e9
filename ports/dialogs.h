// Questions and messages.
#pragma once

#include <string>

namespace vellums {

enum class Answer { Yes, No, Cancel };
enum class QuestionIcon { Question, Information };

class Dialogs {
public:
    virtual ~Dialogs() = default;
    virtual Answer askYesNo(const std::u16string& question, QuestionIcon icon = QuestionIcon::Question) = 0;
    // The same where Yes risks something: the default button is No.
    virtual Answer askNoYes(const std::u16string& question) = 0;
    virtual Answer askYesNoCancel(const std::u16string& question) = 0;
    // Something that needs no answer; `good` picks the icon.
    virtual void tell(const std::u16string& text, bool good) = 0;
    // A folder chosen by the user; empty when cancelled.
    virtual std::u16string chooseFolder(const std::u16string& prompt) = 0;
};

} // namespace vellums
