#include "tests/support/memoryControls.h"

#include "app/boxText.h"
#include "platform/clipboard.h"
#include "text/unicode.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

namespace vellums::tests {

void MemoryTextBox::setText(std::u16string_view text)
{
    text_ = boxText(text);
    selection_ = {};
    undo_.reset();
}

void MemoryTextBox::select(TextRange range)
{
    EXPECT_LE(range.start, range.end);
    selection_ = {std::min(range.start, text_.size()), std::min(range.end, text_.size())};
}

void MemoryTextBox::replaceSelection(std::u16string_view text)
{
    undo_ = State{text_, selection_};
    const std::u16string put = boxText(oneLine_ ? firstLine(text) : text);
    text_.replace(selection_.start, selection_.end - selection_.start, put);
    selection_.start += put.size();
    selection_.end = selection_.start;
}

void MemoryTextBox::undo()
{
    if (!undo_)
        return;
    std::swap(text_, undo_->text);
    std::swap(selection_, undo_->selection);
}

void MemoryTextBox::cut()
{
    if (selection_.empty())
        return;
    copy();
    replaceSelection({});
}

void MemoryTextBox::copy()
{
    if (!selection_.empty())
        platform::setClipboardText(selectedText());
}

void MemoryListBox::fill(const std::vector<ListEntry>& entries)
{
    std::vector<Entry> filled;
    for (const ListEntry& entry : entries)
        if (filled.size() < room_)
            filled.push_back({entry});
    entries_ = std::move(filled);
    current_ = -1;
}

bool MemoryListBox::holds(int index) const
{
    EXPECT_GE(index, 0);
    EXPECT_LT(index, count());
    return index >= 0 && index < count();
}

std::u16string MemoryListBox::text(int index) const
{
    return holds(index) ? entries_[static_cast<std::size_t>(index)].entry.text : u"";
}

std::int32_t MemoryListBox::datum(int index) const
{
    return holds(index) ? entries_[static_cast<std::size_t>(index)].entry.datum : 0;
}

void MemoryListBox::insert(int index, const ListEntry& entry)
{
    ASSERT_GE(index, 0);
    ASSERT_LE(index, count());
    entries_.insert(entries_.begin() + index, Entry{entry});
    if (current_ >= index)
        ++current_;
}

void MemoryListBox::setText(int index, std::u16string_view text)
{
    if (holds(index))
        entries_[static_cast<std::size_t>(index)].entry.text = text;
}

void MemoryListBox::remove(const std::vector<int>& indexes)
{
    EXPECT_TRUE(std::is_sorted(indexes.begin(), indexes.end()));
    for (auto index = indexes.rbegin(); index != indexes.rend(); ++index) {
        if (!holds(*index))
            continue;
        entries_.erase(entries_.begin() + *index);
        if (current_ == *index)
            current_ = -1;
        else if (current_ > *index)
            --current_;
    }
}

std::vector<int> MemoryListBox::selected() const
{
    std::vector<int> indexes;
    for (int i = 0; i < count(); ++i)
        if (entries_[static_cast<std::size_t>(i)].selected)
            indexes.push_back(i);
    return indexes;
}

void MemoryListBox::select(int index)
{
    click(index == -1 ? std::vector<int>() : std::vector<int>{index});
}

void MemoryListBox::click(const std::vector<int>& indexes)
{
    for (Entry& entry : entries_)
        entry.selected = false;
    current_ = -1;
    for (const int index : indexes) {
        if (!holds(index))
            continue;
        entries_[static_cast<std::size_t>(index)].selected = true;
        current_ = index;
    }
}

std::vector<std::u16string> MemoryListBox::texts() const
{
    std::vector<std::u16string> all;
    for (const Entry& entry : entries_)
        all.push_back(entry.entry.text);
    return all;
}

std::vector<std::int32_t> MemoryListBox::data() const
{
    std::vector<std::int32_t> all;
    for (const Entry& entry : entries_)
        all.push_back(entry.entry.datum);
    return all;
}

void MemoryMenuItems::set(std::size_t index, const MenuItem& item)
{
    ASSERT_LE(index, items_.size());
    if (index == items_.size())
        items_.push_back(item);
    else
        items_[index] = item;
}

std::u16string MemoryNameDialog::ask(const NameForm& form)
{
    shown_.push_back(form);
    if (names_.empty()) {
        ADD_FAILURE() << "a name was asked for: " << text::toUtf8(form.label);
        return {};
    }
    const std::u16string name = names_.front();
    names_.pop_front();
    return name;
}

MemoryDialogs::~MemoryDialogs()
{
    EXPECT_TRUE(answers_.empty()) << answers_.size() << " answers were not asked for";
    EXPECT_TRUE(folders_.empty());
}

Answer MemoryDialogs::next(const std::u16string& question)
{
    asked_.push_back(question);
    if (meanwhile)
        meanwhile();
    if (answers_.empty()) {
        ADD_FAILURE() << "nobody expected the question " << text::toUtf8(question);
        return Answer::Cancel;
    }
    const Answer answer = answers_.front();
    answers_.pop_front();
    return answer;
}

Answer MemoryDialogs::askYesNo(const std::u16string& question, QuestionIcon icon)
{
    return next(question + u" (Yes/No" + (icon == QuestionIcon::Information ? u", information)" : u")"));
}

Answer MemoryDialogs::askNoYes(const std::u16string& question)
{
    return next(question + u" (No/Yes)");
}

Answer MemoryDialogs::askYesNoCancel(const std::u16string& question)
{
    return next(question + u" (Yes/No/Cancel)");
}

void MemoryDialogs::tell(const std::u16string& text, bool)
{
    asked_.push_back(text);
    if (meanwhile)
        meanwhile();
}

std::u16string MemoryDialogs::chooseFolder(const std::u16string& prompt)
{
    asked_.push_back(prompt);
    if (meanwhile)
        meanwhile();
    if (folders_.empty()) {
        ADD_FAILURE() << "nobody expected to be asked for a folder: " << text::toUtf8(prompt);
        return {};
    }
    const std::u16string folder = folders_.front();
    folders_.pop_front();
    return folder;
}

std::vector<std::u16string> MemoryDialogs::asked()
{
    return std::exchange(asked_, {});
}

void MemoryProgress::begin(std::u16string_view what)
{
    EXPECT_FALSE(running_) << "one work at a time";
    running_ = true;
    works_.emplace_back(what);
}

bool MemoryProgress::step(std::size_t done, std::size_t total)
{
    EXPECT_TRUE(running_);
    if (onStep)
        onStep(done, total);
    return stopAt_ == 0 || ++steps_ < stopAt_;
}

WindowPorts MemoryWindow::ports()
{
    return {.record = {txtType, txtShowWrap, lblDate, ucStatusRight},
        .list = {caption, lstHeads, chkSort},
        .search = {txtKey, mnu_SortOnTitle, mnu_InstantSrch, mnu_AvailFields},
        .find = {txtInline, txtInlineTip, lstInLineSrch, txtShowWrap},
        .mnu_ezdel = mnu_ezdel,
        .progress = progress,
        .dialogs = dialogs};
}

} // namespace vellums::tests
