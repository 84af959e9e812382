#pragma once

// What a program takes as arguments, and its help. The only access to the library that reads arguments.
//
// A program of several commands:
//     CommandLine commands("webarchive", "Looks into web archives.", "1.0");
//     CommandLine::Command list = commands.add("list", "Lists the resources.", [options] { ...; return 0; });
//     list.positional(options->archive, "ARCHIVE", "The archive.");
//     return commands.run(argc, argv);
//
// One without: what is declared of `program` in the place of `add`.

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace qrv {

/// How a program ends.
enum ExitStatus : int {
    /// All right.
    success = 0,
    /// The file is not right, or something cannot be read or written.
    failure = 1,
    /// The arguments are not right.
    badUsage = 2,
};

class CommandLine {
public:
    /// What is declared of a command. A handle, which must not outlive the command line.
    class Command {
    public:
        /// Something that stands at its place, in the order of these calls. What is filled in has to live
        /// until the command has run.
        void positional(std::string& value, const std::string& name, const std::string& help);
        /// The same for the last one, which may be missing.
        void positional(std::optional<std::string>& value, const std::string& name, const std::string& help);
        /// The same for as many as there are.
        void positionals(std::vector<std::string>& values, const std::string& name, const std::string& help);
        /// "-j,--json": true when it is given.
        void flag(bool& value, const std::string& name, const std::string& help);
        /// "--title": the text that follows it, which the help calls by this name; nothing when it is not
        /// given.
        void option(std::optional<std::string>& value, const std::string& name, const std::string& help,
                    const std::string& valueName = "TEXT");
        /// A text that is one of these.
        void choice(std::string& value, const std::string& name, const std::vector<std::string>& texts,
                    const std::string& help);
        /// A whole number within these bounds.
        void number(std::optional<std::int64_t>& value, const std::string& name, std::int64_t least,
                    std::int64_t most, const std::string& help);

    private:
        friend class CommandLine;
        struct Declaration;

        explicit Command(Declaration& declaration) : declaration_(&declaration) {}

        Declaration* declaration_;
    };

    CommandLine(const std::string& program, const std::string& summary, const std::string& version);
    CommandLine(const CommandLine&) = delete;
    CommandLine& operator=(const CommandLine&) = delete;
    ~CommandLine();

    /// `run` is called when this command is asked for; it gives the exit status.
    Command add(const std::string& name, const std::string& summary, std::function<int()> run);

    /// What is declared of a program without commands. `run` is called when the arguments are right.
    Command program(std::function<int()> run);

    /// Reads the arguments and runs the command. Help and version go to standard output, and give success;
    /// wrong arguments are told on standard error, and give badUsage; what a command throws passes through.
    int run(int argc, const char* const* argv);

private:
    struct Parser;

    std::unique_ptr<Parser> parser_;
};

} // namespace qrv
