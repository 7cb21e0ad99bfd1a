// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "queue/FolderWalk.h"

#include "files/Descriptor.h"
#include "files/RawBytes.h"

#include <cstddef>
#include <cstring>
#include <string_view>
#include <vector>

#include <dirent.h>
#include <sys/stat.h>

namespace brevant {

namespace {

// Open folders kept along one branch; those further up are opened again through ".." on the way back.
constexpr std::size_t openLevels = 32;

constexpr int openFlags = O_RDONLY | O_DIRECTORY;

constexpr std::size_t bufferSize = 65536; // of names at a time

class Walker final {
public:
    Walker(const QByteArray &top, const FolderWalk &walk) : m_top(top), m_walk(walk) {}

    void walk()
    {
        enter(AT_FDCWD, m_top, 0);
        while (!m_levels.empty())
            step();
    }

private:
    struct Level {
        Descriptor folder; ///< closed for now where it is too far up
        dev_t device = 0;
        ino_t inode = 0;
        std::size_t visited = 0;  ///< the entry visited last, an offset into names
        std::size_t next = 0;     ///< the entry to visit next, likewise
        qsizetype pathLength = 0; ///< of the path up to this folder, its "/" included
        std::vector<char> names;  ///< type, name and a zero byte, one entry after the other
    };

    /// Reads the whole folder at m_path, so that what `visit` does to it cannot confuse the reading.
    void enter(int parent, const QByteArray &name, int extraFlags)
    {
        Level level;
        level.folder = openFile(name, openFlags | extraFlags, 0, parent);
        struct stat status {};
        if (!level.folder.isOpen() || ::fstat(level.folder.number(), &status) != 0) {
            failed();
            return;
        }
        level.device = status.st_dev;
        level.inode = status.st_ino;
        readNames(level);
        if (!m_path.isEmpty())
            m_path += u'/';
        level.pathLength = m_path.size();
        m_levels.push_back(std::move(level));
        if (m_levels.size() > openLevels)
            m_levels[m_levels.size() - 1 - openLevels].folder = Descriptor();
    }

    /// The folder at m_path could not be read. One that vanished, or is a folder no more, is no failure.
    void failed() const
    {
        if (m_walk.unreadable && errno != ENOENT && errno != ENOTDIR)
            m_walk.unreadable(m_path, errno);
    }

    /// Without readdir(3), which would need a descriptor and a buffer of its own for each folder.
    void readNames(Level &level)
    {
        while (true) {
            const ssize_t size = ::getdents64(level.folder.number(), m_buffer.data(), m_buffer.size());
            if (size < 0)
                failed();
            if (size <= 0)
                return;
            for (std::size_t at = 0; at < static_cast<std::size_t>(size);) {
                const auto *const entry = reinterpret_cast<const dirent64 *>(m_buffer.data() + at);
                at += entry->d_reclen;
                const std::string_view name(entry->d_name);
                if (name == "." || name == "..")
                    continue;
                level.names.push_back(static_cast<char>(entry->d_type));
                level.names.insert(level.names.end(), name.begin(), name.end());
                level.names.push_back('\0');
            }
        }
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
        level.visited = level.next;
        level.next += length + 2;

        m_path.truncate(level.pathLength);
        m_path += m_walk.decode(QByteArray::fromRawData(name, static_cast<qsizetype>(length)));
        m_walk.visit(m_path, typeOf(type));
        if (isFolder(level.folder.number(), name, type) && (!m_walk.isEntered || m_walk.isEntered(m_path)))
            enter(level.folder.number(), name, O_NOFOLLOW); // which may move the vector under `level`
    }

    [[nodiscard]] static EntryType typeOf(unsigned char type)
    {
        if (type == DT_DIR)
            return EntryType::Folder;
        return type == DT_REG ? EntryType::File : EntryType::Unknown;
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
        if (m_levels.empty() || m_levels.back().folder.isOpen())
            return;
        Descriptor parent = openFile("..", openFlags, 0, left.folder.number());
        if (isAt(m_levels.back(), parent))
            m_levels.back().folder = std::move(parent);
        else
            findBack();
    }

    /// The branch was moved meanwhile, so that ".." leads elsewhere. Goes down from the top again for as long
    /// as the folders are those that were entered; anything deeper counts as vanished.
    void findBack()
    {
        Descriptor last;
        Descriptor next = openFile(m_top, openFlags);
        std::size_t found = 0;
        while (isAt(m_levels[found], next)) {
            last = std::move(next);
            const char *name = &m_levels[found].names[m_levels[found].visited + 1];
            if (++found == m_levels.size())
                break;
            next = openFile(name, openFlags | O_NOFOLLOW, 0, last.number());
        }
        m_levels.resize(found);
        if (found > 0)
            m_levels.back().folder = std::move(last);
    }

    [[nodiscard]] static bool isAt(const Level &level, const Descriptor &folder)
    {
        struct stat status {};
        return ::fstat(folder.number(), &status) == 0 && status.st_dev == level.device &&
               status.st_ino == level.inode;
    }

    const QByteArray m_top;
    const FolderWalk &m_walk;
    std::vector<Level> m_levels;
    QString m_path;
    std::vector<char> m_buffer =
        std::vector<char>(bufferSize); // aligned for any type, as all memory of new is
};

} // namespace

void walkFolder(const QString &top, const FolderWalk &walk)
{
    Walker(RawBytes::encoded(top), walk).walk();
}

void walkFolder(const QString &top, const std::function<void(const QString &relativePath)> &visit,
                const std::function<void(const QString &relativePath, int error)> &unreadable,
                QString (*decode)(const QByteArray &name))
{
    walkFolder(
        top,
        {[&visit](const QString &relativePath, EntryType) { visit(relativePath); }, unreadable, {}, decode});
}

} // namespace brevant
