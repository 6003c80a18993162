#include "file_replace.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sstream>
#include <sys/stat.h>
#include <unistd.h>

namespace {

std::string folder_of(const std::string& target)
{
    const std::string::size_type slash = target.rfind('/');
    if (slash == std::string::npos)
        return ".";
    return slash == 0 ? "/" : target.substr(0, slash);
}

bool fail(std::string* error, const std::string& what, int code)
{
    if (error)
        *error = what + ": " + std::strerror(code);
    return false;
}

// Writes all of `data` to `fd`, going on after partial writes and signals.
bool write_all(int fd, const std::string& data, int* code)
{
    std::size_t done = 0;
    while (done < data.size()) {
        const ssize_t n = ::write(fd, data.data() + done, data.size() - done);
        if (n < 0) {
            if (errno == EINTR)
                continue;
            *code = errno;
            return false;
        }
        done += static_cast<std::size_t>(n);
    }
    return true;
}

}  // namespace

bool replace_file(const std::string& target, const std::function<void(std::ostream&)>& write,
                  std::string* error)
{
    struct stat st;
    if (::stat(target.c_str(), &st) == 0 && S_ISDIR(st.st_mode))
        return fail(error, "a folder has that name", EISDIR);

    // The text is made in memory first: the writers report nothing, so the
    // only failures left are the file system's, each of which is checked.
    std::ostringstream text;
    write(text);

    std::string temporary = folder_of(target) + "/.quilp-XXXXXX";
    const int fd = ::mkstemp(&temporary[0]);
    if (fd < 0)
        return fail(error, "cannot create a file in " + folder_of(target), errno);
    int code = 0;
    bool ok = write_all(fd, text.str(), &code);
    if (ok && ::fsync(fd) != 0) {
        code = errno;
        ok = false;
    }
    // A new file keeps the usual permissions (mkstemp makes it private), an
    // existing one its own.
    if (ok) {
        mode_t mode = 0666;
        if (::stat(target.c_str(), &st) == 0) {
            mode = st.st_mode & 07777;
        } else {
            const mode_t mask = ::umask(0);
            ::umask(mask);
            mode &= ~mask;
        }
        ::fchmod(fd, mode);
    }
    if (::close(fd) != 0 && ok) {
        code = errno;
        ok = false;
    }
    if (ok && ::rename(temporary.c_str(), target.c_str()) != 0) {
        code = errno;
        ok = false;
    }
    if (!ok) {
        ::unlink(temporary.c_str());
        return fail(error, "cannot write", code);
    }
    return true;
}
