// A main window without a screen: every control in memory, questions answered as the test says.
#pragma once

#include "app/nameForm.h"
#include "ports/progress.h"
#include "ports/windowPorts.h"

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace vellums::tests {

// Undo goes one step back, and forth again, as an edit control's does; line ends become CR LF.
class MemoryTextBox : public TextBox {
public:
    enum class Lines { One, Many };
    explicit MemoryTextBox(Lines lines = Lines::Many)
        : oneLine_(lines == Lines::One)
    {
    }
    std::u16string text() const override { return text_; }
    void setText(std::u16string_view text) override;
    void focus() override { focused_ = true; }
    TextRange selection() const override { return selection_; }
    void select(TextRange range) override;
    void replaceSelection(std::u16string_view text) override;
    void scrollToCaret() override { scrolled_ = true; }
    void undo() override;
    void cut() override;
    void copy() override;

    void type(std::u16string_view text) { text_ = text; } // as a user would
    // What happened since the last call.
    bool focused() { return std::exchange(focused_, false); }
    bool scrolled() { return std::exchange(scrolled_, false); }

private:
    struct State {
        std::u16string text;
        TextRange selection;
    };

    std::u16string text_;
    TextRange selection_;
    std::optional<State> undo_;
    bool oneLine_;
    bool focused_ = false;
    bool scrolled_ = false;
};

// Fails the test where a command names an entry that is not there.
class MemoryListBox : public ListBox {
public:
    void fill(const std::vector<ListEntry>& entries) override;
    int count() const override { return static_cast<int>(entries_.size()); }
    std::u16string text(int index) const override;
    std::int32_t datum(int index) const override;
    void insert(int index, const ListEntry& entry) override;
    void setText(int index, std::u16string_view text) override;
    void remove(const std::vector<int>& indexes) override;
    std::vector<int> selected() const override;
    int current() const override { return current_; }
    void select(int index) override;
    bool enabled() const override { return enabled_; }
    void setEnabled(bool enabled) override { enabled_ = enabled; }
    bool visible() const override { return visible_; }
    void setVisible(bool visible) override { visible_ = visible; }
    std::u16string tag() const override { return tag_; }
    void setTag(std::u16string_view tag) override { tag_ = tag; }

    // From now on the list holds this many entries at most.
    void limitTo(std::size_t entries) { room_ = entries; }
    // As a user would, with Ctrl held for each but the first.
    void click(const std::vector<int>& indexes);
    std::vector<std::u16string> texts() const;
    std::vector<std::int32_t> data() const;

private:
    struct Entry {
        ListEntry entry;
        bool selected = false;
    };
    bool holds(int index) const;

    std::vector<Entry> entries_;
    int current_ = -1;
    std::size_t room_ = static_cast<std::size_t>(-1);
    bool enabled_ = true;
    bool visible_ = true;
    std::u16string tag_;
};

class MemoryLabel : public Label {
public:
    std::u16string text() const override { return text_; }
    void setText(std::u16string_view text) override { text_ = text; }

private:
    std::u16string text_;
};

class MemoryCheckItem : public CheckItem {
public:
    bool checked() const override { return checked_; }
    void setChecked(bool checked) override { checked_ = checked; }
    std::u16string caption() const override { return caption_; }
    void setCaption(std::u16string_view caption) override { caption_ = caption; }

private:
    bool checked_ = false;
    std::u16string caption_;
};

class MemoryMenuItems : public MenuItems {
public:
    std::size_t size() const override { return items_.size(); }
    const MenuItem& at(std::size_t index) const override { return items_.at(index); }
    void set(std::size_t index, const MenuItem& item) override;

private:
    std::vector<MenuItem> items_;
};

class MemoryPostponed : public Postponed {
public:
    void start(int quietMs) override
    {
        waiting_ = true;
        quietMs_ = quietMs;
    }
    void cancel() override { waiting_ = false; }
    int quietMs() const { return quietMs_; } // that the last start asked for
    // The user pauses: whether it waited, and waits no more.
    bool comes() { return std::exchange(waiting_, false); }

private:
    bool waiting_ = false;
    int quietMs_ = 0;
};

class MemorySwitch : public Switchable {
public:
    bool enabled() const override { return enabled_; }
    void setEnabled(bool enabled) override { enabled_ = enabled; }

private:
    bool enabled_ = true;
};

// Answers with the names that the test gives, in order; a form without one fails it.
class MemoryNameDialog : public NameDialog {
public:
    std::u16string ask(const NameForm& form) override;

    void answerNext(const std::u16string& name) { names_.push_back(name); }
    void forget() { names_.clear(); } // what was not asked for
    const std::vector<NameForm>& shown() const { return shown_; }

private:
    std::deque<std::u16string> names_;
    std::vector<NameForm> shown_;
};

// A question that the test has no answer for fails it, and so does an answer that nobody asked for.
class MemoryDialogs : public Dialogs {
public:
    ~MemoryDialogs() override;
    Answer askYesNo(const std::u16string& question, QuestionIcon icon) override;
    Answer askNoYes(const std::u16string& question) override;
    Answer askYesNoCancel(const std::u16string& question) override;
    void tell(const std::u16string& text, bool good) override;
    std::u16string chooseFolder(const std::u16string& prompt) override;

    // Called while each question stands: what else comes then.
    std::function<void()> meanwhile;

    void answerNext(Answer answer) { answers_.push_back(answer); }
    void chooseNext(const std::u16string& folder) { folders_.push_back(folder); }
    void forget() // what was not asked for
    {
        answers_.clear();
        folders_.clear();
    }
    // What was asked since the last call, with the buttons: "Save? (Yes/No)".
    std::vector<std::u16string> asked();

private:
    Answer next(const std::u16string& question);

    std::deque<Answer> answers_;
    std::deque<std::u16string> folders_;
    std::vector<std::u16string> asked_;
};

// Long work that the test looks at, stops, or talks into.
class MemoryProgress : public Progress {
public:
    void begin(std::u16string_view what) override;
    bool step(std::size_t done, std::size_t total) override;
    void end() noexcept override { running_ = false; }

    // At the step with this number (counted from 1 over all works) the user asks to stop.
    void stopAt(int step) { stopAt_ = step; }
    // Called at each step, as waiting events are.
    std::function<void(std::size_t done, std::size_t total)> onStep;
    const std::vector<std::u16string>& works() const { return works_; } // their names
    bool isRunning() const { return running_; }

private:
    std::vector<std::u16string> works_;
    bool running_ = false;
    int steps_ = 0;
    int stopAt_ = 0;
};

struct MemoryWindow {
    MemoryLabel caption;
    MemoryTextBox txtKey{MemoryTextBox::Lines::One};
    MemoryTextBox txtInline{MemoryTextBox::Lines::One};
    MemoryTextBox txtType{MemoryTextBox::Lines::One};
    MemoryTextBox txtShowWrap;
    MemoryListBox lstHeads;
    MemoryListBox lstInLineSrch;
    MemoryLabel txtInlineTip;
    MemoryLabel lblDate;
    MemoryCheckItem chkSort;
    MemoryCheckItem mnu_SortOnTitle;
    MemoryCheckItem mnu_ezdel;
    MemoryCheckItem mnu_InstantSrch;
    MemoryMenuItems mnu_AvailFields;
    MemoryLabel ucStatusRight;
    MemoryProgress progress;
    MemoryDialogs dialogs;

    WindowPorts ports();
};

} // namespace vellums::tests
