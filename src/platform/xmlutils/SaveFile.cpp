#include "platform/xmlutils/SaveFile.hpp"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/osapi/Fault.h"

namespace zuv::xmlutils
{
namespace
{

struct Free {
    void operator()(char *block) const { std::free(block); }
};

bool passes(const char *point)
{
    if (ZUVOsapiFault_g_armed != 0 && ZUV_OSAPI_FAULT(point)) {
        errno = EIO;
        return false;
    }
    return true;
}

// What symbolic links lead to, so that they stay.
HeapString resolved(const char *path)
{
    const std::unique_ptr<char, Free> real(realpath(path, nullptr));
    return real != nullptr ? real.get() : path;
}

} // namespace

SaveFile::SaveFile(const char *target) : target_(resolved(target)) {}

SaveFile::~SaveFile()
{
    if (!path_.empty()) {
        unlink(path_.c_str());
    }
    close();
}

void SaveFile::close()
{
    if (file_ >= 0) {
        ::close(file_);
        file_ = -1;
    }
}

bool SaveFile::open()
{
    if (!passes("xmlutils.save.open")) {
        return false;
    }
    constexpr int kAttempts = 100;
    bool isMine = false;
    for (int attempt = 0; !isMine && attempt < kAttempts; ++attempt) {
        char suffix[16];
        std::snprintf(suffix, sizeof(suffix), ".%d.tmp", attempt);
        path_ = target_ + suffix;
        isMine = claim();
    }
    if (!isMine) {
        path_.clear();
        return false;
    }
    return takePermissions();
}

// Whoever writes to the file holds a lock on it, from here until it has another name or none. So one that a killed process
// has left is free, and is written anew; one that is somebody else's in any way is not touched.
bool SaveFile::claim()
{
    file_ = ::open(path_.c_str(), O_WRONLY | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0666);
    if (file_ < 0) {
        return false;
    }
    struct stat opened = {};
    struct stat named = {};
    const bool isMine = flock(file_, LOCK_EX | LOCK_NB) == 0 && fstat(file_, &opened) == 0 &&
                        lstat(path_.c_str(), &named) == 0 && opened.st_dev == named.st_dev &&
                        opened.st_ino == named.st_ino && S_ISREG(opened.st_mode) &&
                        opened.st_nlink == 1 && opened.st_uid == geteuid() &&
                        ftruncate(file_, 0) == 0;
    if (!isMine) {
        close();
        errno = EBUSY;
    }
    return isMine;
}

bool SaveFile::takePermissions()
{
    struct stat present = {};
    if (stat(target_.c_str(), &present) != 0) {
        return errno == ENOENT;
    }
    if (!S_ISREG(present.st_mode)) {
        errno = EINVAL;
        return false;
    }
    // Another owner can be kept by a privileged process alone.
    [[maybe_unused]] const int isKept = fchown(file_, present.st_uid, present.st_gid);
    return fchmod(file_, present.st_mode & 07777) == 0;
}

bool SaveFile::write(std::string_view text)
{
    while (!text.empty()) {
        const ssize_t count =
            passes("xmlutils.save.write") ? ::write(file_, text.data(), text.size()) : -1;
        if (count < 0 && errno != EINTR) {
            return false;
        }
        text.remove_prefix(count > 0 ? static_cast<std::size_t>(count) : 0);
    }
    return true;
}

bool SaveFile::replace()
{
    if (!passes("xmlutils.save.sync") || fsync(file_) != 0) {
        return false;
    }
    if (!passes("xmlutils.save.rename") || rename(path_.c_str(), target_.c_str()) != 0) {
        return false;
    }
    path_.clear();
    close();
    return syncFolder();
}

// Without it the new name could be lost with the power.
bool SaveFile::syncFolder() const
{
    const std::size_t slash = target_.rfind('/');
    const HeapString folder = slash == target_.npos ? "." : target_.substr(0, slash + 1);
    const int file = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (file < 0) {
        return false;
    }
    // Some file systems cannot do it and need not.
    const bool isSynced = fsync(file) == 0 || errno == EINVAL;
    ::close(file);
    return isSynced;
}

} // namespace zuv::xmlutils
