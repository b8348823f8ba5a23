#include "tools/commands/Commands.h"

namespace varnel::admin {

CLI::App& AddCommand(CLI::App& app, const std::string& name, const std::string& does, const std::string& example) {
    CLI::App& command = *app.add_subcommand(name, does);
    command.footer("Example:\n  " + example);
    return command;
}

}  // namespace varnel::admin
