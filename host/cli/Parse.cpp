// Parsing the command line, and what is wrong with one in our words: each argument by itself.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstdio>
#include <sstream>

#include "cli/Nearest.h"
#include "cli/Options.h"
#include "cli/Session.h"

namespace jackdaw::cli {

namespace {

bool IsOption(const std::string &argument) {
    return argument.size() > 1 && argument[0] == '-';
}

/** The command that is named, else the program as a whole. */
const CLI::App &Command(const CLI::App &app) {
    const std::vector<const CLI::App *> commands = app.get_subcommands([](const CLI::App *c) { return c->parsed(); });
    return commands.empty() ? app : *commands.front();
}

std::string SeeHelp(const CLI::App &app) {
    const CLI::App &command = Command(app);
    return &command == &app ? "; see jackdaw --help" : "; see jackdaw " + command.get_name() + " --help";
}

// Long ones: one letter is like any other.
std::vector<std::string> OptionNames(const CLI::App &app) {
    std::vector<std::string> names;
    for (const CLI::App *level : {&Command(app), &app}) {
        for (const CLI::Option *option : level->get_options()) {
            for (const std::string &name : option->get_lnames()) names.push_back("--" + name);
        }
    }
    return names;
}

std::string WhatMayHelp(const CLI::App &app, const std::vector<std::string> &words, const std::string &wanted) {
    const std::string nearest = NearestWord(words, wanted);
    return nearest.empty() ? SeeHelp(app) : "; did you mean " + nearest + "?";
}

void TellUnknownOption(const CLI::App &app, const std::string &argument) {
    const std::string option = argument.substr(0, argument.find('='));
    // "-json" is meant as "--json".
    const bool oneDash = option.size() > 2 && option[1] != '-';
    const std::vector<std::string> known = option.size() > 2 ? OptionNames(app) : std::vector<std::string>();
    const CLI::App &command = Command(app);
    const std::string of = &command == &app ? "there is" : command.get_name() + " has";
    PrintFailure(of + " no option " + option + WhatMayHelp(app, known, oneDash ? "-" + option : option));
}

// What nothing takes, one line each: unknown options, or else the words too many. The values of unknown options are
// among those words, so they are not told of beside them.
bool TellExtras(const CLI::App &app) {
    std::vector<std::string> extras = app.remaining(/*recurse*/ true);
    const auto firstWord = std::stable_partition(extras.begin(), extras.end(), IsOption);
    for (auto option = extras.begin(); option != firstWord; ++option) TellUnknownOption(app, *option);
    if (firstWord != extras.begin()) return true;
    const bool takesSets = Command(app).get_option_no_throw("--set") != nullptr;
    for (const std::string &word : extras) {
        const bool isValue = takesSets && word.find('=') != std::string::npos;
        const std::string help = isValue ? "; did you mean --set \"" + word + "\"?" : SeeHelp(app);
        PrintFailure("\"" + word + "\" is one argument too many" + help);
    }
    return !extras.empty();
}

std::vector<std::string> CommandNames(const CLI::App &app) {
    std::vector<std::string> names;
    for (const CLI::App *command : app.get_subcommands([](const CLI::App *) { return true; }))
        names.push_back(command->get_name());
    return names;
}

// The library takes a first word that is no command for one argument too many.
bool TellUnknownCommand(const CLI::App &app) {
    if (&Command(app) != &app) return false;
    const std::vector<std::string> extras = app.remaining();
    const auto word = std::find_if_not(extras.begin(), extras.end(), IsOption);
    if (word == extras.end() || std::any_of(extras.begin(), extras.end(), IsOption)) return false;
    PrintFailure("there is no command \"" + *word + "\"" + WhatMayHelp(app, CommandNames(app), *word));
    return true;
}

std::string NameOfOption(const CLI::Option &option) {
    const bool isLetter = !option.get_snames().empty();
    const std::string name = isLetter ? "-" + option.get_snames().front() : option.get_name();
    return option.get_type_name().empty() ? name : name + " " + option.get_type_name();
}

std::string WhatIsMissing(const CLI::App &app) {
    const CLI::App &command = Command(app);
    if (&command == &app) return "no command is given";
    std::string missing;
    for (const CLI::Option *option : command.get_options()) {
        if (option->get_required() && option->count() == 0)
            missing += (missing.empty() ? "" : ", ") + NameOfOption(*option);
    }
    return command.get_name() + " needs " + missing;
}

// An option without its value, given twice, or a flag with a value.
std::string WhatDoesNotMatch(const CLI::App &app, const std::string &libraryText) {
    std::string name = libraryText.substr(0, libraryText.find_first_of(": "));
    if (!IsOption(name)) name = "--" + name;
    const CLI::Option *option = Command(app).get_option_no_throw(name);
    if (!option) option = app.get_option_no_throw(name);
    if (!option) return libraryText;
    if (option->get_items_expected_max() == 0) return name + " takes no value";
    return option->count() > 1 ? name + " is given twice"
                               : name + " needs a value: " + name + " " + option->get_type_name();
}

void TellWhatIsWrong(const CLI::App &app, const CLI::ParseError &error) {
    if (TellUnknownCommand(app) || TellExtras(app)) return;
    std::string what = error.what();
    if (dynamic_cast<const CLI::RequiredError *>(&error)) what = WhatIsMissing(app);
    if (dynamic_cast<const CLI::ArgumentMismatch *>(&error)) what = WhatDoesNotMatch(app, what);
    PrintFailure(what + SeeHelp(app));
}

} // namespace

ParseResult ParseArguments(CLI::App &app, int argc, char **argv) {
    try {
        app.parse(argc, argv);
        return ParseResult::Run;
    } catch (const CLI::Success &success) {
        const bool help = dynamic_cast<const CLI::CallForHelp *>(&success);
        if (help && app.remaining() == std::vector<std::string>{"limits"}) return ParseResult::Limits;
        std::ostringstream text;
        app.exit(success, text, text);
        std::fputs(text.str().c_str(), stdout);
        return ParseResult::Told;
    } catch (const CLI::ParseError &error) {
        TellWhatIsWrong(app, error);
        return ParseResult::Wrong;
    }
}

} // namespace jackdaw::cli
