#include "pty_link.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <stdexcept>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

namespace {

[[noreturn]] void fail(const std::string &what) {
    throw std::runtime_error(what + ": " + std::strerror(errno));
}

} // namespace

Pty openPty() {
    Pty p;
    p.master = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (p.master < 0)
        fail("posix_openpt");
    if (grantpt(p.master) != 0 || unlockpt(p.master) != 0)
        fail("grantpt/unlockpt");
    const char *name = ptsname(p.master);
    if (!name)
        fail("ptsname");
    p.path = name;
    p.slave = ::open(name, O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (p.slave < 0)
        fail("open " + p.path);
    termios t{};
    if (tcgetattr(p.slave, &t) != 0)
        fail("tcgetattr");
    cfmakeraw(&t);
    t.c_cflag = (t.c_cflag & ~tcflag_t(CSIZE | PARENB)) | CS8 | CREAD | CLOCAL;
    if (tcsetattr(p.slave, TCSANOW, &t) != 0)
        fail("tcsetattr");
    int fl = fcntl(p.master, F_GETFL);
    if (fl < 0 || fcntl(p.master, F_SETFL, fl | O_NONBLOCK) != 0)
        fail("fcntl");
    return p;
}

void makeLink(const std::string &link, const std::string &target) {
    struct stat st {};
    if (lstat(link.c_str(), &st) == 0) {
        if (!S_ISLNK(st.st_mode)) {
            errno = EEXIST;
            fail("--link " + link + " exists and is no symlink");
        }
        if (unlink(link.c_str()) != 0)
            fail("unlink " + link);
    }
    if (symlink(target.c_str(), link.c_str()) != 0)
        fail("symlink " + link);
}

void removeLink(const std::string &link, const std::string &target) {
    if (link.empty())
        return;
    char buf[4096];
    ssize_t n = readlink(link.c_str(), buf, sizeof buf - 1);
    if (n >= 0 && std::string(buf, size_t(n)) == target)
        unlink(link.c_str());
}
