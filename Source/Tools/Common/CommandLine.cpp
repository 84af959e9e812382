#include "Source/Tools/Common/CommandLine.h"

#include "Source/Tools/Common/TerminalText.h"

#include <CLI/CLI.hpp>
#include <iostream>

namespace qrv {

struct CommandLine::Command::Declaration : CLI::App {
    using App::App;
};

struct CommandLine::Parser {
    Command::Declaration app;
    std::function<int()> chosen;
};

namespace {

/// No argument has it.
constexpr char guard = '\0';

/// Where there may be several texts the library would read "[a,b]" as a list of them.
std::string guarded(std::string text) {
    if (text.starts_with('[') && text.ends_with(']')) text += guard;
    return text;
}

std::string unguarded(std::string text) {
    if (text.ends_with(guard)) text.pop_back();
    return text;
}

/// The library would read "[a,b]" and "{a}" as lists, were they not for a single text.
template <class Value>
CLI::Option* textOption(CLI::App& app, const std::string& name, Value& value, const std::string& help) {
    return app.add_option_function<std::string>(
        name, [&value](const std::string& text) { value = unguarded(text); }, help);
}

} // namespace

void CommandLine::Command::positional(std::string& value, const std::string& name, const std::string& help) {
    textOption(*declaration_, name, value, help)->required();
}

void CommandLine::Command::positional(std::optional<std::string>& value, const std::string& name,
                                      const std::string& help) {
    textOption(*declaration_, name, value, help);
}

void CommandLine::Command::flag(bool& value, const std::string& name, const std::string& help) {
    declaration_->add_flag(name, value, help);
}

void CommandLine::Command::option(std::optional<std::string>& value, const std::string& name,
                                  const std::string& help, const std::string& valueName) {
    textOption(*declaration_, name, value, help)->type_name(valueName);
}

void CommandLine::Command::positionals(std::vector<std::string>& values, const std::string& name,
                                       const std::string& help) {
    declaration_->add_option_function<std::vector<std::string>>(
        name,
        [&values](const std::vector<std::string>& texts) {
            for (const std::string& text : texts) values.push_back(unguarded(text));
        },
        help);
}

void CommandLine::Command::choice(std::string& value, const std::string& name,
                                  const std::vector<std::string>& texts, const std::string& help) {
    std::string names;
    for (const std::string& text : texts) names += (names.empty() ? "" : "|") + text;
    textOption(*declaration_, name, value, help)
        ->type_name(names)
        ->check(CLI::IsMember(texts).description(""));
}

void CommandLine::Command::number(std::optional<std::int64_t>& value, const std::string& name,
                                  std::int64_t least, std::int64_t most, const std::string& help) {
    declaration_->add_option(name, value, help)
        ->type_name("N")
        ->check(CLI::Range(least, most).description(""));
}

CommandLine::CommandLine(const std::string& program, const std::string& summary, const std::string& version)
    : parser_(std::make_unique<Parser>()) {
    parser_->app.name(program);
    parser_->app.description(summary);
    parser_->app.get_formatter()->label("SUBCOMMAND", "COMMAND");
    parser_->app.get_formatter()->label("Subcommands", "Commands");
    parser_->app.get_formatter()->label("TEXT", "");
    parser_->app.set_help_flag("-h,--help", "Says how the program is used");
    parser_->app.set_version_flag("--version", program + " " + version, "Says the version");
}

CommandLine::~CommandLine() = default;

CommandLine::Command CommandLine::add(const std::string& name, const std::string& summary,
                                      std::function<int()> run) {
    auto declaration = std::make_shared<Command::Declaration>(summary, name);
    declaration->set_help_flag("-h,--help", "Says how the command is used");
    declaration->callback([this, run = std::move(run)] { parser_->chosen = run; });
    parser_->app.require_subcommand(1);
    parser_->app.add_subcommand(declaration);
    return Command(*declaration);
}

CommandLine::Command CommandLine::program(std::function<int()> run) {
    parser_->chosen = std::move(run);
    return Command(parser_->app);
}

int CommandLine::run(int argc, const char* const* argv) {
    CLI::App& app = parser_->app;
    try {
        std::vector<std::string> texts; // the last one first, as the library wants them
        for (int i = argc - 1; i > 0; --i) texts.push_back(guarded(argv[i]));
        app.parse(std::move(texts));
    } catch (const CLI::Success& asked) {
        app.exit(asked, std::cout);
        return success;
    } catch (const CLI::ParseError& error) {
        std::cerr << app.get_name() << ": " << shown(error.what()) << "; --help says more\n";
        return badUsage;
    }
    return parser_->chosen();
}

} // namespace qrv
