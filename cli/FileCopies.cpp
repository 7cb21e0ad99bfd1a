// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/FileCopies.h"

#include "cli/BuildCache.h"
#include "cli/Colours.h"
#include "cli/OutTree.h"
#include "cli/TerminalText.h"
#include "files/DurableFile.h"
#include "files/FileBytes.h"
#include "files/Folders.h"
#include "files/PathString.h"
#include "files/RawBytes.h"

#include <algorithm>
#include <system_error>
#include <thread>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

/// Whether two open files of that size have the same content.
bool isSameContent(int one, int other, qint64 size)
{
    constexpr qint64 step = 1 << 20;
    for (qint64 at = 0; at < size; at += step) {
        const std::optional<QByteArray> bytes = FileBytes::read(one, step, at);
        if (!bytes || bytes != FileBytes::read(other, step, at))
            return false;
    }
    return true;
}

/// Whether the file has that name in that folder already, with the same content. Its time becomes that of the
/// source if it is to be kept.
bool isCopiedAlready(int source, const struct stat &status, const Descriptor &folder, const QByteArray &name,
                     bool keepsTime)
{
    const Descriptor there = openFile(name, O_RDONLY | O_NOFOLLOW, 0, folder.number());
    struct stat found {};
    if (!there.isOpen() || ::fstat(there.number(), &found) != 0 || !S_ISREG(found.st_mode) ||
        found.st_size != status.st_size || !isSameContent(source, there.number(), status.st_size))
        return false;
    const timespec times[]{{0, UTIME_OMIT}, status.st_mtim};
    return !keepsTime || ::futimens(there.number(), times) == 0;
}

} // namespace

void RestOfTree::add(const QString &relativePath, EntryType type)
{
    const QByteArray path = RawBytes::encoded(pathOf(relativePath));
    struct stat status {};
    if (PathString::lastComponent(pathOf(relativePath)) == BuildCache::fileName)
        return;
    if (type == EntryType::Unknown && ::lstat(path.constData(), &status) == 0)
        type = S_ISREG(status.st_mode) ? EntryType::File : EntryType::Unknown;
    if (type == EntryType::File) {
        m_files.append(relativePath);
        m_taken.insert(relativePath);
    } else if (S_ISLNK(status.st_mode) && !(relativePath.isEmpty() && leadsToFolder(path))) {
        m_links.append(relativePath);
    }
}

std::vector<FileCopy> RestOfTree::copies() const
{
    std::vector<FileCopy> copies;
    for (const QString &file : m_files)
        copies.push_back({pathOf(file), pathOf(file), {}});
    for (const QString &link : m_links) {
        if (const QString source = sourceOfLink(link); !source.isEmpty())
            copies.push_back({pathOf(link), source, {}});
    }
    return copies;
}

QStringList RestOfTree::passedOver() const
{
    QStringList links;
    for (const QString &link : m_links) {
        if (sourceOfLink(link).isEmpty())
            links.append(pathOf(link));
    }
    return links;
}

QString RestOfTree::pathOf(const QString &relativePath) const
{
    return relativePath.isEmpty() ? m_top : PathString::join(m_top, relativePath);
}

/// Empty if it leads to no file that is taken.
QString RestOfTree::sourceOfLink(const QString &relativePath) const
{
    const QByteArray top = realPath(RawBytes::encoded(m_top)) + '/';
    const QByteArray real = realPath(RawBytes::encoded(pathOf(relativePath)));
    const QString found = real.startsWith(top) ? RawBytes::decoded(real.sliced(top.size())) : QString();
    return m_taken.contains(found) ? pathOf(found) : QString();
}

void FileCopying::run(const std::vector<FileCopy> &copies, int atOnce, const std::atomic<Stop> &stop)
{
    std::vector<QString> errors(copies.size());
    std::atomic<std::size_t> next = 0;
    const auto work = [&] {
        for (std::size_t i = next++; i < copies.size(); i = next++) {
            if (stop != Stop::No)
                m_isStopped = true;
            if (m_isStopped)
                return;
            errors[i] = makeCopy(copies[i], stop);
        }
    };
    {
        std::vector<std::jthread> others;
        try {
            for (std::size_t i = 1; i < std::min(copies.size(), static_cast<std::size_t>(atOnce)); ++i)
                others.emplace_back(work);
        } catch (const std::system_error &) {
            // The threads that could be started do the work.
        }
        work();
    }
    for (std::size_t i = 0; i < copies.size(); ++i) {
        if (!errors[i].isEmpty())
            m_failures.emplace_back(copies[i].found, errors[i]);
    }
}

/// Why it could not be made, in words; empty if it is there.
QString FileCopying::makeCopy(const FileCopy &copy, const std::atomic<Stop> &stop)
{
    const Descriptor source = openRegularFile(RawBytes::encoded(copy.source), O_RDONLY | O_NOFOLLOW);
    struct stat status {};
    if (!source.isOpen() || ::fstat(source.number(), &status) != 0)
        return errno == EINVAL ? u"it is not a regular file"_s : qt_error_string(errno);
    QString error;
    const Descriptor folder = m_tree.openFolderOf(copy.target, error);
    if (!folder.isOpen())
        return error;
    const QByteArray name = RawBytes::encoded(PathString::lastComponent(copy.target).toString());
    if (isCopiedAlready(source.number(), status, folder, name, m_keepsTimes)) {
        ++m_unchanged;
        return {};
    }
    if (!m_keepsTimes)
        status.st_mtim = {0, UTIME_NOW};
    // Not by its path: a link that is planted meanwhile leads nowhere else.
    DurableFile file(pathOfOpen(folder.number()) + '/' + name, status);
    error = fill(file, source, stop);
    if (error.isEmpty())
        ++m_copied;
    return error;
}

QString FileCopying::fill(DurableFile &file, const Descriptor &source, const std::atomic<Stop> &stop)
{
    if (!file.write({}))
        return file.errorText();
    constexpr qint64 step = 64 << 20;
    qint64 size = 0;
    for (std::optional<qint64> more = step; *more == step; size += *more) {
        more = FileBytes::copy(source.number(), size, file.number(), size, step);
        if (!more)
            return qt_error_string(errno);
        if (stop == Stop::AtOnce) {
            m_isStopped = true;
            return u"the run was stopped"_s;
        }
    }
    return file.commit() ? QString() : file.errorText();
}

QString FileCopying::inWords() const
{
    const QString text = u"%1 copied"_s.arg(TerminalText::grouped(m_copied));
    return m_unchanged > 0 ? text + u", %1 unchanged"_s.arg(TerminalText::grouped(m_unchanged)) : text;
}

QString FileCopying::failures(const Colours &colours) const
{
    QString text;
    for (const auto &[file, why] : m_failures)
        text += colours.error(u"Not copied:"_s) + u" %1: %2\n"_s.arg(printable(file), printable(why));
    return text;
}

} // namespace brevant
