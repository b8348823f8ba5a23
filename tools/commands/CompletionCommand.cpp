#include <string>
#include <string_view>
#include <vector>

#include "tools/commands/Commands.h"
#include "tools/output/Printing.h"

namespace varnel::admin {
namespace {

constexpr std::string_view kHead = R"bash(# Completion for bash, made by: varnel-admin completion bash
# To use it: eval "$(varnel-admin completion bash)"

# The lines of standard input that begin with the word; a quote that opens the word is no part of it.
_varnel_admin_words() {
    local choice start=${1#[\"\']}
    while IFS= read -r choice; do
        [[ $choice == "$start"* ]] && COMPREPLY+=("$choice")
    done
}

# The same for what may hold blanks, which are then quoted.
_varnel_admin_values() {
    compopt -o filenames 2> /dev/null
    _varnel_admin_words "$1"
}

_varnel_admin_files() {
    _varnel_admin_values "$1" < <(compgen -f -- "${1#[\"\']}")
}

_varnel_admin() {
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]} command=${COMP_WORDS[1]}
    COMPREPLY=()
)bash";

constexpr std::string_view kFoot = R"bash(}
complete -F _varnel_admin varnel-admin
)bash";

/// text between single quotes of the shell.
std::string ShellQuoted(const std::string& text) {
    std::string quoted = "'";
    for (const char c : text) quoted += c == '\'' ? "'\\''" : std::string(1, c);
    return quoted + "'";
}

/// What a value can be: the words that the option is limited to ("TEXT:{ACCESS,FOXPRO DIR}"), none for any other.
std::vector<std::string> ChoicesOf(const CLI::Option& option) {
    const std::string type = option.get_type_name();
    const std::size_t open = type.find('{'), close = type.rfind('}');
    if (open == std::string::npos || close == std::string::npos) return {};
    return CLI::detail::split(type.substr(open + 1, close - open - 1), ',');
}

/// The line that completes a value of the option; "" when there is nothing to propose.
std::string Proposal(const CLI::Option& option) {
    if (option.get_type_name() == kFileType) return "_varnel_admin_files \"$word\"";
    std::string line;
    for (const std::string& choice : ChoicesOf(option)) line += " " + ShellQuoted(choice);
    return line.empty() ? "" : "_varnel_admin_values \"$word\" < <(printf '%s\\n'" + line + ")";
}

std::vector<const CLI::Option*> OptionsOf(const CLI::App& command, bool positional) {
    return command.get_options(
        [positional](const CLI::Option* option) { return option->nonpositional() != positional; });
}

std::string NamesOf(const CLI::App& command) {
    std::string names;
    for (const CLI::Option* option : OptionsOf(command, false))
        for (const std::string& name : option->get_lnames()) names += " --" + name;
    return names;
}

/// The words that may come first.
std::string FirstWords(const CLI::App& app) {
    std::string words;
    for (const CLI::App* command : app.get_subcommands({})) words += " " + command->get_name();
    return "    if ((COMP_CWORD == 1)); then\n        _varnel_admin_words \"$word\" < <(printf '%s\\n'" + words +
           NamesOf(app) + ")\n        return\n    fi\n";
}

/// The values of options, behind their names.
std::string OptionValues(const CLI::App& app) {
    std::string cases;
    for (const CLI::App* command : app.get_subcommands({}))
        for (const CLI::Option* option : OptionsOf(*command, false)) {
            if (option->get_items_expected_max() == 0) continue;
            const std::string proposal = Proposal(*option);
            for (const std::string& name : option->get_lnames())
                cases += "        \"" + command->get_name() + " --" + name + "\") " +
                         (proposal.empty() ? "" : proposal + "; ") + "return ;;\n";
        }
    return "    case \"$command $before\" in\n" + cases + "    esac\n";
}

/// Options where a dash begins the word, else what the command itself takes.
std::string Arguments(const CLI::App& app) {
    std::string options, values;
    for (const CLI::App* command : app.get_subcommands({})) {
        options += "            " + command->get_name() + ") _varnel_admin_words \"$word\" < <(printf '%s\\n'" +
                   NamesOf(*command) + ") ;;\n";
        std::string proposal;
        for (const CLI::Option* option : OptionsOf(*command, true))
            if (proposal.empty()) proposal = Proposal(*option);
        if (!proposal.empty()) values += "            " + command->get_name() + ") " + proposal + " ;;\n";
    }
    return "    if [[ $word == -* ]]; then\n        case $command in\n" + options +
           "        esac\n    else\n        case $command in\n" + values + "        esac\n    fi\n";
}

std::string BashCompletion(const CLI::App& app) {
    return std::string(kHead) + FirstWords(app) + OptionValues(app) + Arguments(app) + std::string(kFoot);
}

}  // namespace

void AddCompletion(CLI::App& app) {
    auto& command = AddCommand(app, "completion", "Prints what bash needs to complete the words of this command line.",
                               "eval \"$(varnel-admin completion bash)\"");
    command.add_option("shell", "Shell to complete words in")->required()->check(CLI::IsMember({"bash"}));
    command.callback([&app] {
        Print(BashCompletion(app));
        FinishPrinting();
    });
}

}  // namespace varnel::admin
