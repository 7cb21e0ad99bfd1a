// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "queue/FolderWalk.h"

#include <QByteArray>
#include <QFile>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brevant {

namespace {

// Open folders kept along one branch; those further up are opened again through ".." on the way back.
constexpr std::size_t openLevels = 32;

class Walker final {
public:
    explicit Walker(const std::function<void(const QString &)> &visit) : m_visit(visit) {}

    Walker(const Walker &) = delete;
    Walker &operator=(const Walker &) = delete;

    ~Walker()
    {
        for (const Level &level : m_levels) {
            if (level.descriptor >= 0)
                ::close(level.descriptor);
        }
    }

    void walk(const QByteArray &top)
    {
        enter(AT_FDCWD, top.constData(), 0, 0);
        while (!m_levels.empty())
            step();
    }

private:
    struct Level {
        int descriptor = -1; ///< -1: closed for now
        dev_t device = 0;
        ino_t inode = 0;
        std::size_t next = 0;     ///< the entry to visit next, an offset into names
        qsizetype pathLength = 0; ///< of the path up to this folder, its "/" included
        std::vector<char> names;  ///< type, name and a zero byte, one entry after the other
    };

    /// Reads a whole folder, so that what `visit` does to it cannot confuse the reading.
    void enter(int parent, const char *name, int extraFlags, qsizetype pathLength)
    {
        const int descriptor =
            ::openat(parent, name, O_RDONLY | O_DIRECTORY | O_NONBLOCK | O_CLOEXEC | extraFlags);
        if (descriptor < 0)
            return;
        struct stat status {};
        // fdopendir takes the descriptor it is given, and the level needs one of its own.
        const int own = ::fstat(descriptor, &status) == 0 ? ::fcntl(descriptor, F_DUPFD_CLOEXEC, 0) : -1;
        DIR *folder = own < 0 ? nullptr : ::fdopendir(own);
        if (folder == nullptr) {
            if (own >= 0)
                ::close(own);
            ::close(descriptor);
            return;
        }
        Level level;
        level.descriptor = descriptor;
        level.device = status.st_dev;
        level.inode = status.st_ino;
        level.pathLength = pathLength;
        while (const dirent *entry = ::readdir(folder)) {
            const std::string_view entryName(entry->d_name);
            if (entryName == "." || entryName == "..")
                continue;
            level.names.push_back(static_cast<char>(entry->d_type));
            level.names.insert(level.names.end(), entryName.begin(), entryName.end());
            level.names.push_back('\0');
        }
        ::closedir(folder);
        m_levels.push_back(std::move(level));
        if (m_levels.size() > openLevels)
            close(m_levels[m_levels.size() - 1 - openLevels]);
    }

    void step()
    {
        Level &level = m_levels.back();
        if (level.next >= level.names.size()) {
            leave();
            return;
        }
        const auto type = static_cast<unsigned char>(level.names[level.next]);
        const char *name = &level.names[level.next + 1];
        const std::size_t length = std::strlen(name);
        level.next += length + 2;

        m_path.truncate(level.pathLength);
        m_path += QFile::decodeName(QByteArray::fromRawData(name, static_cast<qsizetype>(length)));
        m_visit(m_path);
        if (!isFolder(level.descriptor, name, type))
            return;
        m_path += u'/';
        // The vector may move under `level` from here on.
        enter(level.descriptor, name, O_NOFOLLOW, m_path.size());
    }

    [[nodiscard]] static bool isFolder(int parent, const char *name, unsigned char type)
    {
        if (type != DT_UNKNOWN)
            return type == DT_DIR;
        struct stat status {};
        return ::fstatat(parent, name, &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISDIR(status.st_mode);
    }

    void leave()
    {
        const Level left = std::move(m_levels.back());
        m_levels.pop_back();
        if (!m_levels.empty() && m_levels.back().descriptor < 0 && !reopen(m_levels.back(), left.descriptor))
            m_levels.clear(); // the branch was moved away meanwhile: nothing above it can be reached
        ::close(left.descriptor);
    }

    [[nodiscard]] static bool reopen(Level &level, int child)
    {
        const int descriptor = ::openat(child, "..", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        struct stat status {};
        if (descriptor < 0)
            return false;
        if (::fstat(descriptor, &status) != 0 || status.st_dev != level.device ||
            status.st_ino != level.inode) {
            ::close(descriptor);
            return false;
        }
        level.descriptor = descriptor;
        return true;
    }

    static void close(Level &level)
    {
        if (level.descriptor >= 0)
            ::close(level.descriptor);
        level.descriptor = -1;
    }

    const std::function<void(const QString &)> &m_visit;
    std::vector<Level> m_levels;
    QString m_path;
};

} // namespace

void walkFolder(const QString &top, const std::function<void(const QString &relativePath)> &visit)
{
    Walker(visit).walk(QFile::encodeName(top));
}

} // namespace brevant
