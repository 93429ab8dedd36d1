#pragma once
// The control's memory: one file per program in a folder. A program is bytes; a line is what
// ends at CR.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

class ProgramStore {
public:
    // An empty folder name gives a store that keeps nothing and lists nothing.
    ProgramStore(std::string dir, std::string ext);

    // The programs by name, in byte order; hidden files and folders are not programs.
    std::vector<std::string> names() const;
    std::optional<std::string> read(const std::string &name) const;
    // Keeps a received program under the first free running name PROG<n><ext>; returns the
    // name, or an empty string without a folder. Throws std::runtime_error if it cannot write.
    std::string storeNew(std::string_view program);
    bool remove(const std::string &name);

private:
    std::optional<std::string> pathOf(const std::string &name) const;
    std::string m_dir;
    std::string m_ext;
};

// A program as the control sends it: each line with its CR (and an LF right behind it); a
// last line without CR is given one.
std::vector<std::string_view> splitLines(std::string_view program);
