// A main window without a screen: every control in memory, questions answered as the test says.
#pragma once

#include "app/mainWindow.h"
#include "app/nameForm.h"

#include <deque>
#include <string>
#include <vector>

namespace vellums::tests {

class MemoryTextBox : public TextBox {
public:
    std::u16string text() const override { return text_; }
    void setText(std::u16string_view text) override { text_ = text; }
    void focus() override { focused_ = true; }

    void type(std::u16string_view text) { text_ = text; } // as a user would
    bool focused() const { return focused_; }

private:
    std::u16string text_;
    bool focused_ = false;
};

// Fails the test where a command names an entry that is not there.
class MemoryListBox : public ListBox {
public:
    void fill(const std::vector<ListEntry>& entries) override;
    int count() const override { return static_cast<int>(entries_.size()); }
    std::int32_t datum(int index) const override;
    void insert(int index, const ListEntry& entry) override;
    void setText(int index, std::u16string_view text) override;
    void remove(const std::vector<int>& indexes) override;
    std::vector<int> selected() const override;
    int current() const override { return current_; }
    void select(int index) override;
    std::u16string tag() const override { return tag_; }
    void setTag(std::u16string_view tag) override { tag_ = tag; }

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
    Answer askYesNoCancel(const std::u16string& question) override;
    std::u16string chooseFolder(const std::u16string& prompt) override;

    void answerNext(Answer answer) { answers_.push_back(answer); }
    void chooseNext(const std::u16string& folder) { folders_.push_back(folder); }
    // What was asked since the last call, with the buttons: "Save? (Yes/No)".
    std::vector<std::u16string> asked();

private:
    Answer next(const std::u16string& question);

    std::deque<Answer> answers_;
    std::deque<std::u16string> folders_;
    std::vector<std::u16string> asked_;
};

struct MemoryWindow {
    MemoryLabel caption;
    MemoryTextBox txtKey;
    MemoryTextBox txtType;
    MemoryTextBox txtShowWrap;
    MemoryListBox lstHeads;
    MemoryLabel lblDate;
    MemoryCheckItem chkSort;
    MemoryCheckItem mnu_SortOnTitle;
    MemoryCheckItem mnu_ezdel;
    MemoryMenuItems mnu_AvailFields;
    MemoryLabel ucStatusRight;
    MemoryDialogs dialogs;

    MainWindow ports(StatusLine& status);
};

} // namespace vellums::tests
