#include "program_store.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>

ProgramStore::ProgramStore(std::string dir, std::string ext)
    : m_dir(std::move(dir)), m_ext(std::move(ext)) {}

// A name from the wire must not reach outside the folder.
std::optional<std::string> ProgramStore::pathOf(const std::string &name) const {
    if (m_dir.empty() || name.empty() || name == "." || name == ".." ||
        name.find('/') != std::string::npos || name.find('\0') != std::string::npos)
        return std::nullopt;
    return m_dir + "/" + name;
}

std::vector<std::string> ProgramStore::names() const {
    std::vector<std::string> out;
    if (m_dir.empty())
        return out;
    DIR *d = opendir(m_dir.c_str());
    if (!d)
        return out;
    while (dirent *e = readdir(d)) {
        std::string name = e->d_name;
        if (name.empty() || name[0] == '.')
            continue;
        struct stat st {};
        if (stat((m_dir + "/" + name).c_str(), &st) == 0 && S_ISREG(st.st_mode))
            out.push_back(std::move(name));
    }
    closedir(d);
    std::sort(out.begin(), out.end());
    return out;
}

std::optional<std::string> ProgramStore::read(const std::string &name) const {
    auto path = pathOf(name);
    if (!path)
        return std::nullopt;
    int fd = ::open(path->c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return std::nullopt;
    std::string data;
    char buf[65536];
    ssize_t n;
    while ((n = ::read(fd, buf, sizeof buf)) > 0)
        data.append(buf, size_t(n));
    ::close(fd);
    if (n < 0)
        return std::nullopt;
    return data;
}

std::string ProgramStore::storeNew(std::string_view program) {
    if (m_dir.empty())
        return {};
    for (int n = 1;; ++n) {
        std::string name = "PROG" + std::to_string(n) + m_ext;
        std::string path = m_dir + "/" + name;
        int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
        if (fd < 0 && errno == EEXIST)
            continue;
        if (fd < 0)
            throw std::runtime_error("cannot store " + path + ": " + std::strerror(errno));
        std::string_view left = program;
        while (!left.empty()) {
            ssize_t w = ::write(fd, left.data(), left.size());
            if (w <= 0) {
                ::close(fd);
                throw std::runtime_error("cannot write " + path + ": " + std::strerror(errno));
            }
            left.remove_prefix(size_t(w));
        }
        ::close(fd);
        return name;
    }
}

bool ProgramStore::remove(const std::string &name) {
    auto path = pathOf(name);
    return path && ::unlink(path->c_str()) == 0;
}

std::vector<std::string_view> splitLines(std::string_view program) {
    std::vector<std::string_view> lines;
    size_t start = 0;
    while (start < program.size()) {
        size_t cr = program.find('\r', start);
        if (cr == std::string_view::npos) {
            lines.push_back(program.substr(start)); // the caller adds the missing CR
            break;
        }
        size_t end = cr + 1;
        if (end < program.size() && program[end] == '\n')
            ++end;
        lines.push_back(program.substr(start, end - start));
        start = end;
    }
    return lines;
}
