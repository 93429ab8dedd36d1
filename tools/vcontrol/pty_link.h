#pragma once
// The pseudo-terminal that stands in for the serial cable, and the symlink that names it.

#include <string>

struct Pty {
    int master = -1;
    int slave = -1; // held open for our whole life: the program's side never sees a hang-up
    std::string path;
};

// Opens a master (non-blocking) and its slave in raw mode, 8 bits, no echo. Throws
// std::runtime_error with the reason.
Pty openPty();

// Makes `link` a symlink to `target`; an old symlink there is replaced, anything else is not.
void makeLink(const std::string &link, const std::string &target);
// Removes `link` if it still points at `target` (a newer control may have taken the name).
void removeLink(const std::string &link, const std::string &target);
