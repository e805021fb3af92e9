// vellums-cli: the notebook without its window.
#include "cli/arguments.h"
#include "cli/commands.h"
#include "cli/output.h"
#include "cli/session.h"
#include "platform/codePage.h"
#include "platform/entryPoint.h"
#include "text/decimal.h"

#include <new>

namespace vellums::cli {
namespace {

constexpr int kDone = 0;
constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;

void chooseCodePage(const Arguments& arguments)
{
    if (arguments.codePage && *arguments.codePage != platform::ansiCodePage() &&
        !platform::setAnsiCodePage(*arguments.codePage))
        throw UsageError{u"Code page " + text::decimal(*arguments.codePage) + u" is not at hand."};
}

const Command& commandOf(const Arguments& arguments)
{
    if (arguments.command.empty())
        throw UsageError{u"There is no command."};
    const Command* const command = findCommand(arguments.command);
    if (command == nullptr)
        throw UsageError{u"There is no command \"" + arguments.command + u"\"."};
    return *command;
}

void checkUsage(const Command& command, const Arguments& arguments)
{
    for (const std::u16string& option : arguments.options)
        if (!takesOption(command, option))
            throw UsageError{u"The command \"" + arguments.command + u"\" has no option " + option + u"."};
    const std::size_t count = arguments.values.size();
    if (count >= command.fewest && count <= command.most)
        return;
    throw UsageError{(count < command.fewest ? u"Something is missing. Usage: vellums-cli "
                                             : u"There is too much. Usage: vellums-cli ") +
        arguments.command + u" " + std::u16string(command.usage)};
}

// Help when it is asked for: of the program, or of a command.
bool helped(const Arguments& arguments)
{
    const bool word = arguments.command == u"help";
    if (!arguments.help && !word)
        return false;
    Arguments asked = arguments;
    if (word)
        asked.command = arguments.values.empty() ? u"" : arguments.values[0];
    print(asked.command.empty() ? generalHelp() : helpOf(commandOf(asked)));
    return true;
}

int runWords(const std::vector<std::u16string>& words)
{
    const Arguments arguments = parseArguments(words);
    if (!helped(arguments)) {
        const Command& command = commandOf(arguments);
        checkUsage(command, arguments);
        chooseCodePage(arguments);
        command.run(arguments);
    }
    // Output is kept back, so a full disk or a closed pipe may show only here; it makes the command a failed
    // one.
    if (flush())
        return kDone;
    complain(u"vellums-cli: The output could not be written.");
    return kFailed;
}

// An empty sentence: it has been told already.
int failed(const std::u16string& sentence)
{
    if (!sentence.empty())
        complain(u"vellums-cli: " + sentence);
    return kFailed;
}

} // namespace
} // namespace vellums::cli

int programMain(const std::vector<std::u16string>& arguments, const std::u16string&)
{
    using namespace vellums;
    try {
        return cli::runWords(arguments);
    } catch (const cli::UsageError& e) {
        cli::complain(u"vellums-cli: " + e.sentence + u" (vellums-cli --help lists the commands.)");
        return cli::kWrongUsage;
    } catch (const cli::Failure& e) {
        return cli::failed(e.sentence);
    } catch (const ProviderError& e) {
        return cli::failed(reasonOf(e));
    } catch (const std::bad_alloc&) {
        return cli::failed(u"There is not enough memory.");
    }
}
