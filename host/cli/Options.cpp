// The options of the command line.
// SPDX-License-Identifier: MIT
#include "cli/Options.h"

#include <charconv>
#include <memory>

#include "Version.h"

namespace jackdaw::cli {

namespace {

/** Columns beside the names of the options. */
constexpr std::size_t s_helpColumns = 48;

std::string CheckPath(const std::string &path) {
    return path.empty() ? "the path is empty" : "";
}

std::string CheckNumber(const std::string &text) {
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error == std::errc::result_out_of_range) return text + " is too large";
    return error == std::errc() && *end == '\0' ? "" : "\"" + text + "\" is no whole number";
}

void AddInput(CLI::App *command, InputOptions &input) {
    command->add_option("FILE", input.file, "The PDF document; - is standard input")
        ->required()
        ->check(CheckPath)
        ->type_name("");
    command
        ->add_option("--password-file", input.passwordFile,
                     "File whose first line is the password of an encrypted document")
        ->check(CheckPath)
        ->type_name("PATH");
    command
        ->add_flag("--strict", input.strict,
                   "Do nothing when there is anything to warn about, such as a damaged document")
        ->disable_flag_override();
}

void AddOutput(CLI::App *command, std::string &output, const char *what) {
    command->add_option("-o,--output", output, what)->required()->check(CheckPath)->type_name("PATH");
}

void AddBreaking(CLI::App *command, bool &breakSignatures) {
    command->add_flag("--break-signatures", breakSignatures,
                      "Change a signed or certified document all the same: its signatures do not hold afterwards");
}

void DescribeFields(CLI::App &app, FieldsOptions &options) {
    CLI::App *command = app.add_subcommand("fields", "List the fields of a form");
    AddInput(command, options.input);
    command->add_flag("--json", options.json, "One JSON object a line, with all there is to know, instead of a table")
        ->disable_flag_override();
}

void DescribeFill(CLI::App &app, FillOptions &options) {
    CLI::App *command = app.add_subcommand("fill", "Fill in a form");
    AddInput(command, options.input);
    command
        ->add_option("--set", options.sets,
                     "Set the field NAME to VALUE. Check boxes take their on-state, true or false; radio buttons and "
                     "choices take the export value or the text shown. The NAME ends at the first =, or at a later one "
                     "when the form has a field of the longer name. May be repeated")
        ->type_name("NAME=VALUE")
        ->expected(1)
        ->allow_extra_args(false)
        ->take_all();
    command
        ->add_option(
            "--json", options.json,
            "File with the values in JSON: an object of field names to texts, numbers, booleans, null (which clears "
            "the field) or, for a list of several choices, an array of texts; or what fields --json prints, as it is "
            "or in an array, with some values changed. Where a value is as it was, the field is left alone. - is "
            "standard input")
        ->type_name("DATA");
    AddBreaking(command, options.breakSignatures);
    AddOutput(command, options.output, "The filled document; - is standard output");
}

void DescribeReset(CLI::App &app, ResetOptions &options) {
    CLI::App *command = app.add_subcommand("reset", "Set fields back to their default values");
    AddInput(command, options.input);
    command->add_option("NAME", options.names, "Fields to reset; all of them when none is named")->type_name("");
    AddBreaking(command, options.breakSignatures);
    AddOutput(command, options.output, "The reset document; - is standard output");
}

void DescribeRender(CLI::App &app, RenderOptions &options) {
    CLI::App *command = app.add_subcommand("render", "Draw a page with its fields as a PNG picture");
    AddInput(command, options.input);
    command->add_option("--page", options.page, "Page to draw, from 1")
        ->check(CheckNumber)
        ->capture_default_str()
        ->type_name("N");
    command->add_option("--dpi", options.dpi, "Pixels to the inch, 1 to 2400")
        ->check(CheckNumber)
        ->capture_default_str()
        ->type_name("N");
    AddOutput(command, options.output, "The picture; - is standard output");
}

/** Help in lines that a terminal of 80 columns shows whole. */
class HelpFormatter : public CLI::Formatter {
public:
    std::string make_option_desc(const CLI::Option *option) const override {
        std::string text = option->get_description();
        std::size_t start = 0;
        while (text.size() - start > s_helpColumns) {
            const std::size_t blank = text.rfind(' ', start + s_helpColumns);
            if (blank == std::string::npos || blank < start) break;
            text[blank] = '\n';
            start = blank + 1;
        }
        return text;
    }
};

std::string Roff(std::string text) {
    for (std::size_t at = 0; (at = text.find_first_of("-\\", at)) != std::string::npos; at += 2) text.insert(at, "\\");
    return text;
}

bool IsPositional(const CLI::Option *option) {
    return option->get_positional();
}

std::string Synopsis(const CLI::App *command) {
    std::string text = "jackdaw " + command->get_name();
    for (const CLI::Option *option : command->get_options()) {
        if (!IsPositional(option)) continue;
        text += option->get_required() ? " " + option->get_name() : " [" + option->get_name() + "...]";
    }
    return text + " [OPTION...]";
}

std::string ManualOption(const CLI::Option *option) {
    const std::string value =
        option->get_items_expected_max() > 0 && !IsPositional(option) ? " " + option->get_type_name() : "";
    return ".TP\n.B " + Roff(option->get_name(false, true) + value) + "\n" + Roff(option->get_description()) + ".\n";
}

std::string ManualOptions(const CLI::App *command) {
    std::string text;
    for (const CLI::Option *option : command->get_options()) text += ManualOption(option);
    return text;
}

} // namespace

void DescribeOptions(CLI::App &app, Options &options) {
    app.name("jackdaw");
    const auto formatter = std::make_shared<HelpFormatter>();
    formatter->label("SUBCOMMAND", "COMMAND");
    formatter->label("OPTIONS", "OPTION...");
    formatter->label("REQUIRED", "(needed)");
    app.formatter(formatter);
    app.description("Fill in the forms of PDF documents");
    app.set_version_flag("--version", std::string("jackdaw ") + JACKDAW_VERSION, "Print the version and stop");
    app.set_help_flag("-h,--help", "Print this help and stop; --help limits lists the limits");
    app.add_option("--plug-ins", options.plugIns,
                   "Folder of the plug-ins, in place of the one installed with the program")
        ->type_name("DIR");
    app.add_option("--limit", options.limits, "Set a limit on what is taken on from a file. May be repeated")
        ->type_name("NAME=N")
        ->expected(1)
        ->allow_extra_args(false)
        ->take_all();
    app.require_subcommand(1);
    // Options of the program are taken behind the command too.
    app.fallthrough();
    app.footer("Exit code: 0 done, 2 nothing done, 3 done with warnings.");
    DescribeFields(app, options.fields);
    DescribeFill(app, options.fill);
    DescribeReset(app, options.reset);
    DescribeRender(app, options.render);
}

std::string ManualPage(const CLI::App &app) {
    std::string page = ".TH JACKDAW 1 \"\" \"jackdaw " JACKDAW_VERSION "\" \"User Commands\"\n.SH NAME\njackdaw \\- ";
    page += "fill in the forms of PDF documents\n.SH SYNOPSIS\n";
    for (const CLI::App *command : app.get_subcommands({})) page += ".B " + Roff(Synopsis(command)) + "\n.br\n";
    page += ".SH DESCRIPTION\nLists, fills, resets and draws the interactive forms of PDF documents, with no display.\n"
            "Documents are written as new files that are renamed into place: on any failure the former file stands.\n"
            "Messages go to standard error, data to standard output.\n";
    page += ".SH OPTIONS\n" + ManualOptions(&app);
    for (const CLI::App *command : app.get_subcommands({})) {
        page += ".SH COMMAND " + command->get_name() + "\n" + Roff(command->get_description()) + ".\n";
        page += ManualOptions(command);
    }
    page += ".SH EXIT STATUS\n.TP\n.B 0\nDone.\n.TP\n.B 2\nNothing done; the last line says why.\n.TP\n.B 3\n"
            "Done, with warnings.\n";
    page += ".SH ENVIRONMENT\n.TP\n.B JACKDAW_PLUG_INS\nFolder of the plug-ins, as\n.BR \\-\\-plug\\-ins .\n";
    page += ".SH EXAMPLES\n.nf\njackdaw fields form.pdf\njackdaw fill form.pdf \\-\\-set given=Ada \\-o out.pdf\n"
            "jackdaw render out.pdf \\-\\-dpi 150 \\-o page.png\n.fi\n";
    return page;
}

std::string Completion(const CLI::App &app) {
    std::string commands, cases;
    for (const CLI::App *command : app.get_subcommands({})) {
        commands += " " + command->get_name();
        cases += "    " + command->get_name() + ") words=\"";
        for (const CLI::Option *option : command->get_options()) {
            for (const std::string &name : option->get_lnames()) cases += "--" + name + " ";
        }
        cases += "\" ;;\n";
    }
    return "_jackdaw() {\n  local words=\"" + commands.substr(1) +
           " --help --version --plug-ins --limit\" word=${COMP_WORDS[COMP_CWORD]}\n  case ${COMP_WORDS[1]} in\n" +
           cases +
           "  esac\n  [[ $word == -* || $COMP_CWORD == 1 ]] && COMPREPLY=($(compgen -W \"$words\" -- \"$word\"))\n}\n"
           "complete -o default -F _jackdaw jackdaw\n";
}

} // namespace jackdaw::cli
