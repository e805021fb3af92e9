// Two steps. The collector goes through the text once and takes down its numbers with what stands around
// them: a time separator behind, a name of a month, a sign for year, month or day. It refuses what can be no
// part of a date, so no text takes longer than its length. Then the numbers are shared out: those that are
// tied by time separators, or marked as an hour, are the time, which must stand at one end; of the others
// two or three are the date, tried in the orders of the locale (header) until one gives a day that exists.
#include "jet/sql/values/dateText.h"

#include "jet/sql/values/asciiUnits.h"
#include "platform/clock.h"
#include "text/oleDate.h"

#include <algorithm>
#include <array>
#include <span>
#include <vector>

namespace vellums::jet::sql {

namespace {

constexpr int kTooLarge = 10000; // every larger number counts as this one
constexpr int kCenturyPivot = 49;
constexpr std::size_t kMaxNumbers = 6;

enum class WordKind { Month, Day, Morning, Afternoon };

struct KnownWord {
    std::u16string_view text; // small letters
    WordKind kind;
    int month = 0;
};

// A word stands before every other word that it begins with.
// clang-format off
constexpr KnownWord kWords[] = {
    {u"january", WordKind::Month, 1},   {u"february", WordKind::Month, 2},  {u"march", WordKind::Month, 3},
    {u"april", WordKind::Month, 4},     {u"may", WordKind::Month, 5},       {u"june", WordKind::Month, 6},
    {u"july", WordKind::Month, 7},      {u"august", WordKind::Month, 8},    {u"september", WordKind::Month, 9},
    {u"october", WordKind::Month, 10},  {u"november", WordKind::Month, 11}, {u"december", WordKind::Month, 12},
    {u"jan", WordKind::Month, 1},       {u"feb", WordKind::Month, 2},       {u"mar", WordKind::Month, 3},
    {u"apr", WordKind::Month, 4},       {u"jun", WordKind::Month, 6},       {u"jul", WordKind::Month, 7},
    {u"aug", WordKind::Month, 8},       {u"sep", WordKind::Month, 9},       {u"oct", WordKind::Month, 10},
    {u"nov", WordKind::Month, 11},      {u"dec", WordKind::Month, 12},
    {u"十一月", WordKind::Month, 11},   {u"十二月", WordKind::Month, 12},   {u"一月", WordKind::Month, 1},
    {u"二月", WordKind::Month, 2},      {u"三月", WordKind::Month, 3},      {u"四月", WordKind::Month, 4},
    {u"五月", WordKind::Month, 5},      {u"六月", WordKind::Month, 6},      {u"七月", WordKind::Month, 7},
    {u"八月", WordKind::Month, 8},      {u"九月", WordKind::Month, 9},      {u"十月", WordKind::Month, 10},
    {u"monday", WordKind::Day},    {u"tuesday", WordKind::Day},  {u"wednesday", WordKind::Day},
    {u"thursday", WordKind::Day},  {u"friday", WordKind::Day},   {u"saturday", WordKind::Day},
    {u"sunday", WordKind::Day},    {u"mon", WordKind::Day},      {u"tue", WordKind::Day},
    {u"wed", WordKind::Day},       {u"thu", WordKind::Day},      {u"fri", WordKind::Day},
    {u"sat", WordKind::Day},       {u"sun", WordKind::Day},
    {u"星期一", WordKind::Day},    {u"星期二", WordKind::Day},   {u"星期三", WordKind::Day},
    {u"星期四", WordKind::Day},    {u"星期五", WordKind::Day},   {u"星期六", WordKind::Day},
    {u"星期日", WordKind::Day},    {u"周一", WordKind::Day},     {u"周二", WordKind::Day},
    {u"周三", WordKind::Day},      {u"周四", WordKind::Day},     {u"周五", WordKind::Day},
    {u"周六", WordKind::Day},      {u"周日", WordKind::Day},
    {u"am", WordKind::Morning},    {u"pm", WordKind::Afternoon}, {u"a", WordKind::Morning},
    {u"p", WordKind::Afternoon},   {u"上午", WordKind::Morning}, {u"下午", WordKind::Afternoon},
};
// clang-format on

struct Number {
    int value = 0;
    int digits = 0;
    bool month = false;       // a name, or 月 behind it
    bool year = false;        // 年 behind it
    bool day = false;         // 日 behind it
    bool timeFollows = false; // a time separator behind it
    bool hour = false;        // marked by a word for morning or afternoon, or by 时 alone
    bool halfBehind = false;  // the word stands behind it
};

bool isGap(char16_t c)
{
    return c == u' ' || (c >= u'\t' && c <= u'\r') || c == 0xA0 || c == 0x1680 ||
        (c >= 0x2000 && c <= 0x200A) || c == 0x2028 || c == 0x2029 || c == 0x202F || c == 0x205F ||
        c == 0x3000;
}

int daysInMonth(int year, int month)
{
    if (month == 2)
        return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0 ? 29 : 28;
    return month == 4 || month == 6 || month == 9 || month == 11 ? 30 : 31;
}

// Collects the numbers of the text with their marks.
class Collector {
public:
    explicit Collector(std::u16string_view text)
        : text_(text)
    {
    }

    bool run()
    {
        while (at_ < text_.size())
            if (!step())
                return false;
        if (pendingHalf_ || numbers.empty())
            return false;
        return !numbers.back().timeFollows;
    }

    std::vector<Number> numbers;
    bool hasHalf = false; // a word for morning or afternoon
    bool afternoon = false;

private:
    bool step()
    {
        const char16_t c = text_[at_];
        if (isDigit(c))
            return readNumber();
        if (isGap(c)) {
            ++at_;
            return true;
        }
        if (c == u',')
            return ++at_ < text_.size();
        if (c == u'-' || c == u'/')
            return dateSeparator();
        if (c == u':' || c == u'.')
            return timeSeparator();
        if (std::u16string_view(u"年月日时分秒").find(c) != std::u16string_view::npos)
            return chineseSeparator(c);
        return word();
    }

    bool add(Number number)
    {
        if (numbers.size() == kMaxNumbers)
            return false;
        if (pendingHalf_) {
            pendingHalf_ = false;
            number.hour = true;
        }
        numbers.push_back(number);
        return true;
    }

    bool readNumber()
    {
        Number number;
        for (; at_ < text_.size() && isDigit(text_[at_]); ++at_, ++number.digits)
            number.value = std::min(kTooLarge, number.value * 10 + (text_[at_] - u'0'));
        return add(number);
    }

    bool dateSeparator()
    {
        ++at_;
        return ++dateSeparators_ <= 2 && !numbers.empty() && at_ < text_.size();
    }

    bool timeSeparator()
    {
        ++at_;
        if (++timeSeparators_ > 2 || numbers.empty() || numbers.back().halfBehind || at_ == text_.size())
            return false;
        numbers.back().timeFollows = true;
        return true;
    }

    bool digitFollows() const
    {
        std::size_t at = at_;
        while (at < text_.size() && isGap(text_[at]))
            ++at;
        return at < text_.size() && isDigit(text_[at]);
    }

    // 时 and 分 separate where a number follows; behind the last number they only say what it is.
    bool chineseSeparator(char16_t c)
    {
        ++at_;
        if (numbers.empty())
            return false;
        Number& last = numbers.back();
        if (c == u'年')
            last.year = true;
        else if (c == u'月')
            last.month = true;
        else if (c == u'日')
            last.day = true;
        else if (c == u'时' && !digitFollows())
            last.hour = true;
        else if ((c == u'时' || c == u'分') && digitFollows()) {
            if (++timeSeparators_ > 2)
                return false;
            last.timeFollows = true;
        }
        return true;
    }

    bool word()
    {
        for (const KnownWord& known : kWords)
            if (startsWith(known.text)) {
                at_ += known.text.size();
                return use(known);
            }
        return false;
    }

    bool startsWith(std::u16string_view small) const
    {
        if (text_.size() - at_ < small.size())
            return false;
        for (std::size_t i = 0; i < small.size(); ++i) {
            char16_t c = text_[at_ + i];
            if (c >= u'A' && c <= u'Z')
                c = static_cast<char16_t>(c + 0x20);
            if (c != small[i])
                return false;
        }
        return true;
    }

    bool use(const KnownWord& known)
    {
        if (known.kind == WordKind::Day)
            return true;
        if (known.kind == WordKind::Month) {
            Number number;
            number.value = known.month;
            number.digits = known.month < 10 ? 1 : 2;
            number.month = true;
            return add(number);
        }
        if (hasHalf)
            return false;
        hasHalf = true;
        afternoon = known.kind == WordKind::Afternoon;
        // In Chinese the word may stand before the time; behind a time it belongs to that.
        const bool chinese = known.text.front() >= 0x80;
        const bool timeBehind = digitFollows();
        if (chinese && timeBehind) {
            pendingHalf_ = true;
            return true;
        }
        if (numbers.empty() || numbers.back().timeFollows || numbers.back().day)
            return false;
        numbers.back().hour = true;
        numbers.back().halfBehind = true;
        return true;
    }

    std::u16string_view text_;
    std::size_t at_ = 0;
    int dateSeparators_ = 0;
    int timeSeparators_ = 0;
    bool pendingHalf_ = false;
};

// Where the time lies among the numbers: [begin, end), empty when there is none.
struct TimePart {
    std::size_t begin = 0;
    std::size_t end = 0;
    std::size_t size() const { return end - begin; }
};

// Nullopt: more than one time, more than three numbers in it, an hour that is not in it, or a date on both
// sides.
std::optional<TimePart> findTime(std::span<const Number> numbers)
{
    TimePart part;
    std::size_t runs = 0;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        if (!numbers[i].timeFollows)
            continue;
        ++runs;
        part.begin = i;
        while (i < numbers.size() && numbers[i].timeFollows)
            ++i;
        if (i == numbers.size())
            return std::nullopt;
        part.end = i + 1;
    }
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        if (!numbers[i].hour)
            continue;
        if (runs == 0) {
            ++runs;
            part = {i, i + 1};
        } else if (i < part.begin || i >= part.end) {
            return std::nullopt;
        }
    }
    if (runs > 1 || part.size() > 3)
        return std::nullopt;
    if (part.size() != 0 && part.begin != 0 && part.end != numbers.size())
        return std::nullopt;
    return part;
}

bool readTime(std::span<const Number> time, bool hasHalf, bool afternoon, text::LocalTime& fields)
{
    if (time.empty())
        return true;
    int hour = time[0].value;
    const int minute = time.size() > 1 ? time[1].value : 0;
    const int second = time.size() > 2 ? time[2].value : 0;
    if (hour > 23 || minute > 59 || second > 59)
        return false;
    if (hasHalf && afternoon && hour < 12)
        hour += 12;
    else if (hasHalf && !afternoon && hour == 12)
        hour = 0;
    fields.hour = hour;
    fields.minute = minute;
    fields.second = second;
    return true;
}

bool setDate(int year, int month, int day, text::LocalTime& fields)
{
    if (year >= kTooLarge || month < 1 || month > 12 || day < 1 || day > daysInMonth(year, month))
        return false;
    // Two digits mean the years from 1950 to 2049.
    fields.year = year > 99 ? year : year <= kCenturyPivot ? 2000 + year : 1900 + year;
    fields.month = month;
    fields.day = day;
    return true;
}

// Places of year, month and day among three numbers.
struct Places {
    std::size_t year, month, day;
};
constexpr Places kMdy{2, 0, 1};
constexpr Places kDmy{2, 1, 0};
constexpr Places kYmd{0, 1, 2};
constexpr Places kYdm{0, 2, 1};

std::vector<Places> placesToTry(DateOrder order, const Number& first)
{
    switch (order) {
    case DateOrder::MonthDayYear:
        return {kMdy, kYmd, kYdm, kDmy};
    case DateOrder::DayMonthYear:
        return {kDmy, kYmd, kMdy, kYdm};
    case DateOrder::YearMonthDay:
        return {kYmd, kMdy, kYdm, kDmy};
    case DateOrder::Literal:
        break;
    }
    if (first.digits >= 3)
        return {kYmd};
    return {kMdy, kDmy};
}

// A number that says what it is can only stand where the order wants that.
bool readThree(std::span<const Number> n, DateOrder order, text::LocalTime& fields)
{
    for (const Places& places : placesToTry(order, n[0])) {
        bool fits = true;
        for (std::size_t i = 0; i < 3; ++i)
            fits = fits && (!n[i].month || places.month == i) && (!n[i].year || places.year == i);
        if (fits && setDate(n[places.year].value, n[places.month].value, n[places.day].value, fields))
            return true;
    }
    // 24年3月5日 says its order itself.
    return n[0].year && n[1].month && setDate(n[0].value, n[1].value, n[2].value, fields);
}

// Day and month of this year, in either order; failing that month and year, and the day is the first.
bool readTwo(std::span<const Number> n, DateOrder order, int currentYear, text::LocalTime& fields)
{
    const std::size_t first = order == DateOrder::DayMonthYear ? 1 : 0; // place of the month
    for (const std::size_t month : {first, 1 - first}) {
        const Number& day = n[1 - month];
        if (!day.month && !day.year && !n[month].year &&
            setDate(currentYear, n[month].value, day.value, fields))
            return true;
    }
    for (const std::size_t year : {std::size_t{0}, std::size_t{1}})
        if (!n[year].month && !n[1 - year].year && setDate(n[year].value, n[1 - year].value, 1, fields))
            return true;
    return false;
}

} // namespace

std::optional<Date> readDateText(std::u16string_view text, DateOrder order, int currentYear)
{
    Collector collector(text);
    if (!collector.run())
        return std::nullopt;
    const std::span<const Number> numbers(collector.numbers);
    const std::optional<TimePart> time = findTime(numbers);
    if (!time)
        return std::nullopt;
    text::LocalTime fields;
    if (!readTime(numbers.subspan(time->begin, time->size()), collector.hasHalf, collector.afternoon, fields))
        return std::nullopt;
    const std::span<const Number> date = time->size() != 0 && time->begin == 0
        ? numbers.subspan(time->end)
        : numbers.first(time->size() == 0 ? numbers.size() : time->begin);
    const bool read = date.empty() ||
        (date.size() == 2 &&
            readTwo(date, order, currentYear != 0 ? currentYear : platform::localNow().year, fields)) ||
        (date.size() == 3 && readThree(date, order, fields));
    if (!read)
        return std::nullopt;
    return Date{text::oleDate(fields)};
}

} // namespace vellums::jet::sql
