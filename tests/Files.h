// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace brevant::test {

/// Writes a file in place, the way a shell's ">" does: the same file, truncated and filled.
inline bool writeFile(const QString &path, QByteArrayView bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes.data(), bytes.size()) == bytes.size();
}

/// Writes a file the way an editor does: another file, put into its place.
inline bool replaceFile(const QString &path, QByteArrayView bytes)
{
    const QString other = path + ".new"_L1;
    return writeFile(other, bytes) &&
           std::rename(QFile::encodeName(other).constData(), QFile::encodeName(path).constData()) == 0;
}

/// The whole content of a file, or a text that says that there is none to be read.
inline QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : "(cannot be read)"_ba;
}

/// What lstat(2) tells of a path; zeros if there is nothing.
inline struct stat statusOf(const QString &path)
{
    struct stat status {};
    ::lstat(QFile::encodeName(path).constData(), &status);
    return status;
}

/// The permission bits of a path, links followed; all of them (07777).
inline mode_t modeOf(const QString &path)
{
    struct stat status {};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode & 07777 : 0;
}

inline bool setMode(const QString &path, mode_t mode)
{
    return ::chmod(QFile::encodeName(path).constData(), mode) == 0;
}

inline bool makeHardLink(const QString &file, const QString &name)
{
    return ::link(QFile::encodeName(file).constData(), QFile::encodeName(name).constData()) == 0;
}

inline bool makeLink(const QString &target, const QString &link)
{
    return ::symlink(QFile::encodeName(target).constData(), QFile::encodeName(link).constData()) == 0;
}

/// While it lives, what the process writes to its standard error goes here instead.
class CapturedStandardError final {
public:
    CapturedStandardError() : m_saved(::dup(2)), m_file(std::tmpfile()) { ::dup2(::fileno(m_file), 2); }
    ~CapturedStandardError()
    {
        ::dup2(m_saved, 2);
        ::close(m_saved);
        std::fclose(m_file);
    }
    CapturedStandardError(const CapturedStandardError &) = delete;
    CapturedStandardError &operator=(const CapturedStandardError &) = delete;

    [[nodiscard]] QByteArray text() const
    {
        QByteArray bytes(65536, Qt::Uninitialized);
        const ssize_t length =
            ::pread(::fileno(m_file), bytes.data(), static_cast<std::size_t>(bytes.size()), 0);
        bytes.truncate(length);
        return bytes;
    }
    [[nodiscard]] qsizetype lineCount() const { return text().count('\n'); }

private:
    int m_saved;
    std::FILE *m_file;
};

/// While it lives, the process has no more rights than an ordinary user, also where root runs the tests.
class OrdinaryUser final {
public:
    OrdinaryUser()
    {
        if (m_wasRoot)
            m_ready = ::setresgid(nobody, nobody, 0) == 0 && ::setresuid(nobody, nobody, 0) == 0;
    }
    ~OrdinaryUser()
    {
        if (m_wasRoot && (::setresuid(0, 0, 0) != 0 || ::setresgid(0, 0, 0) != 0))
            std::abort();
    }
    OrdinaryUser(const OrdinaryUser &) = delete;
    OrdinaryUser &operator=(const OrdinaryUser &) = delete;

    [[nodiscard]] bool isReady() const { return m_ready; }

    /// A folder of that user's, or null where there can be none.
    [[nodiscard]] std::unique_ptr<QTemporaryDir> makeFolder() const
    {
        auto folder = m_ready ? std::make_unique<QTemporaryDir>() : nullptr;
        return folder && folder->isValid() ? std::move(folder) : nullptr;
    }

private:
    static constexpr unsigned nobody = 65534;
    bool m_wasRoot = ::geteuid() == 0;
    bool m_ready = true;
};

} // namespace brevant::test
