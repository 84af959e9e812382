#pragma once

// Which files a process and its descendants may use, by the kernel's Landlock: what no rule allows fails with
// EACCES, whatever the file's own permissions say.
//
//     FileRules rules = FileRules::closingAll();
//     rules.allow("/usr/share/fonts", FileRules::read);
//     ... fork; in the child:
//     if (!rules.enforce()) ...
//
// Rules can not be taken back. Files that are open already stay usable; a file's properties can always be
// read. Whoever is behind rules can mount nothing and trace nobody outside.

#include <cstdint>
#include <string>
#include <vector>

namespace qrv {

class FileRules {
public:
    using Rights = std::uint64_t;

    static const Rights read;    ///< files and lists of folders
    static const Rights execute; ///< needs read, too
    static const Rights write;   ///< files that exist
    static const Rights change;  ///< write, and make, rename and remove whatever is in a folder

    /// Closes all files. TCP, and signals and abstract sockets to processes outside, are closed besides, as
    /// far as the kernel can.
    static FileRules closingAll();
    /// Leaves reading open; closes writing, changing and execution.
    static FileRules leavingRead();

    /// Opens a file, or a folder with all that is below it. Symbolic links are followed when the rules are
    /// enforced; what is not there then is left out.
    void allow(std::string path, Rights rights);

    /// Opens what it takes to replace a file by a new one: its folder, and that of what a link there leads to
    /// now. A folder that is not there can not be changed later. Nothing for what is no file.
    void allowReplacing(const std::string& path);

    /// Puts the rules around the calling thread, which loses the chance to get new privileges. Returns false
    /// and sets errno if the kernel has no Landlock or no room for more rules. Async-signal-safe.
    bool enforce() const;

private:
    struct Rule {
        std::string path;
        Rights rights;
    };

    FileRules(Rights closed, bool isolates) : closed_(closed), isolates_(isolates) {}

    Rights closed_;
    bool isolates_;
    std::vector<Rule> rules_;
};

} // namespace qrv
