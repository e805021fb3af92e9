// The controls of a window as commands see them. The window implements them over real controls, the
// tests in memory. Text is UTF-16, positions are code units, indexes count from 0.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vellums {

// A part of a box's text; where both are the same, the caret between two units.
struct TextRange {
    std::size_t start = 0;
    std::size_t end = 0; // behind the last unit
    bool empty() const { return start == end; }
    bool operator==(const TextRange&) const = default;
};

// A box for text, of one line or several. What is put into it gets the form of boxText(); a box of one line
// takes the first line of what replaces its selection.
class TextBox {
public:
    virtual ~TextBox() = default;
    virtual std::u16string text() const = 0;
    // Replaces everything; cannot be undone. The caret goes to the start.
    virtual void setText(std::u16string_view text) = 0;
    virtual void focus() = 0;

    virtual TextRange selection() const = 0;
    // What lies beyond the end of the text counts as its end.
    virtual void select(TextRange range) = 0;
    // Puts a text in the place of the selection, so that undo() takes it back; the caret goes behind it.
    virtual void replaceSelection(std::u16string_view text) = 0;
    virtual void scrollToCaret() = 0;
    // Takes the last change back, or makes it again.
    virtual void undo() = 0;
    virtual void cut() = 0;
    virtual void copy() = 0;

    void selectAll() { select({0, static_cast<std::size_t>(-1)}); }
    std::u16string selectedText() const
    {
        const TextRange range = selection();
        return range.empty() ? std::u16string() : text().substr(range.start, range.end - range.start);
    }
};

struct ListEntry {
    std::u16string text;
    std::int32_t datum = 0;
};

// A list of entries, each with a number of its own; several may be selected.
class ListBox {
public:
    virtual ~ListBox() = default;
    // Replaces all entries at once; nothing is selected then. A list that cannot hold all of them holds the
    // first ones.
    virtual void fill(const std::vector<ListEntry>& entries) = 0;
    virtual int count() const = 0;
    virtual std::u16string text(int index) const = 0;
    virtual std::int32_t datum(int index) const = 0;
    // Throws std::bad_alloc where the list cannot hold one more; then nothing has changed.
    virtual void insert(int index, const ListEntry& entry) = 0;
    virtual void setText(int index, std::u16string_view text) = 0;
    // Removes entries in one go; the indexes ascend.
    virtual void remove(const std::vector<int>& indexes) = 0;
    // Ascending.
    virtual std::vector<int> selected() const = 0;
    // The entry last clicked or reached by a key, selected or not; -1: none.
    virtual int current() const = 0;
    // Selects this entry alone and makes it the current one; -1: none.
    virtual void select(int index) = 0;
    // A list that is not enabled takes no clicks.
    virtual bool enabled() const = 0;
    virtual void setEnabled(bool enabled) = 0;
    virtual bool visible() const = 0;
    virtual void setVisible(bool visible) = 0;
    // A mark that commands leave for each other; empty at first.
    virtual std::u16string tag() const = 0;
    virtual void setTag(std::u16string_view tag) = 0;
};

// A piece of text that only shows: a label, the caption of a window.
class Label {
public:
    virtual ~Label() = default;
    virtual std::u16string text() const = 0;
    virtual void setText(std::u16string_view text) = 0;
};

// A check box or a menu entry with a check mark.
class CheckItem {
public:
    virtual ~CheckItem() = default;
    virtual bool checked() const = 0;
    virtual void setChecked(bool checked) = 0;
    virtual std::u16string caption() const = 0;
    virtual void setCaption(std::u16string_view caption) = 0;
};

// One entry of a menu array that is filled while the program runs.
struct MenuItem {
    std::u16string caption;
    std::u16string tag;
    bool checked = false;
    bool visible = false;
    bool enabled = true;
};

class MenuItems {
public:
    virtual ~MenuItems() = default;
    virtual std::size_t size() const = 0;
    virtual const MenuItem& at(std::size_t index) const = 0;
    // index == size() adds an entry.
    virtual void set(std::size_t index, const MenuItem& item) = 0;
};

// Something that is put off until the user pauses.
class Postponed {
public:
    virtual ~Postponed() = default;
    // Once, after so many milliseconds without another start; 0: as soon as nothing else waits.
    virtual void start(int quietMs) = 0;
    virtual void cancel() = 0;
};

// A menu or an entry that can be grey.
class Switchable {
public:
    virtual ~Switchable() = default;
    virtual bool enabled() const = 0;
    virtual void setEnabled(bool enabled) = 0;
};

} // namespace vellums
