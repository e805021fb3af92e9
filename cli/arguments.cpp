// Options are told from values by their form alone, before it is known which command they belong to; whether
// the command takes them is looked at later (takesOption), so that "no such option" and "not an option of
// this command" are different answers. A lone "-" is a value: it stands for standard input.
#include "cli/arguments.h"

#include "text/unicode.h"

#include <charconv>

namespace vellums::cli {
namespace {

struct Word {
    std::u16string name;
    std::optional<std::u16string> value; // behind "="
};

Word splitOption(const std::u16string& word)
{
    const std::size_t equals = word.find(u'=');
    if (equals == std::u16string::npos)
        return {word, std::nullopt};
    return {word.substr(0, equals), word.substr(equals + 1)};
}

bool* flagOf(Arguments& arguments, const std::u16string& name)
{
    if (name == u"--help" || name == u"-h")
        return &arguments.help;
    if (name == u"--titles-only")
        return &arguments.titlesOnly;
    if (name == u"--by-title")
        return &arguments.byTitle;
    if (name == u"--no-backup")
        return &arguments.noBackup;
    return name == u"--ascending" ? &arguments.ascending : nullptr;
}

void setCodePage(Arguments& arguments, const std::u16string& value)
{
    const std::optional<std::int32_t> number = wholeNumber(value);
    if (!number || *number <= 0)
        throw UsageError{u"\"" + value + u"\" is no code page."};
    arguments.codePage = static_cast<unsigned>(*number);
}

bool takesValue(const std::u16string& name)
{
    return name == u"--table" || name == u"--title" || name == u"--code-page" || name == u"--password";
}

void setValue(Arguments& arguments, const std::u16string& name, const std::u16string& value)
{
    if (name == u"--code-page")
        setCodePage(arguments, value);
    else if (name == u"--table")
        arguments.table = value;
    else if (name == u"--password")
        arguments.password = value;
    else
        arguments.title = value;
}

} // namespace

std::optional<std::int32_t> wholeNumber(std::u16string_view text)
{
    const std::string digits = text::toUtf8(text);
    std::int32_t number = 0;
    const char* const end = digits.data() + digits.size();
    const auto [stop, code] = std::from_chars(digits.data(), end, number);
    if (code != std::errc() || stop != end)
        return std::nullopt;
    return number;
}

Arguments parseArguments(const std::vector<std::u16string>& words)
{
    Arguments arguments;
    bool optionsEnded = false;
    std::vector<std::u16string> values;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::u16string& word = words[i];
        if (optionsEnded || word.size() < 2 || word[0] != u'-') {
            values.push_back(word);
            continue;
        }
        if (word == u"--") {
            optionsEnded = true;
            continue;
        }
        const Word option = splitOption(word);
        // "--flag=value" is no flag, and falls through to the refusal.
        bool* const flag = flagOf(arguments, option.name);
        if (flag != nullptr && !option.value) {
            *flag = true;
        } else if (takesValue(option.name)) {
            if (!option.value && i + 1 == words.size())
                throw UsageError{option.name + u" needs a value."};
            setValue(arguments, option.name, option.value ? *option.value : words[++i]);
        } else {
            throw UsageError{u"There is no option " + word + u"."};
        }
        arguments.options.push_back(option.name);
    }
    if (!values.empty()) {
        arguments.command = values.front();
        arguments.values.assign(values.begin() + 1, values.end());
    }
    return arguments;
}

} // namespace vellums::cli
