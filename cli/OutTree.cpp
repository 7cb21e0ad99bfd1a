// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/OutTree.h"

#include "cli/CommandLine.h"
#include "files/Folders.h"
#include "files/PathString.h"
#include "files/RawBytes.h"

#include <QDir>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

QString withoutSlashAtEnd(QString path)
{
    while (path.size() > 1 && path.endsWith(u'/'))
        path.chop(1);
    return path;
}

} // namespace

OutTree::OutTree(const CommandLine &line)
    : m_top(withoutSlashAtEnd(line.outDir)), m_workingFolder(PathString::join(QDir::currentPath(), {}))
{
    if (m_top.isEmpty())
        return;
    for (qsizetype rank = 0; rank < line.treeRoots.size(); ++rank)
        m_roots.insert(line.treeRoots[rank], {rank - line.treeRoots.size(), false});
    const qsizetype named = line.paths.size() - line.listed;
    for (qsizetype rank = 0; rank < line.paths.size(); ++rank) {
        const QString root = withoutSlashAtEnd(PathString::absolute(line.paths[rank]));
        const QString clean = PathString::join(QDir::cleanPath(root), {});
        if (!m_roots.contains(root))
            m_roots.insert(root, {rank, rank >= named && clean.startsWith(m_workingFolder)});
    }
    for (auto root = m_roots.keyBegin(); root != m_roots.keyEnd(); ++root)
        m_lengths.insert(root->size());
}

QString OutTree::folderOf(const QString &file) const
{
    if (m_top.isEmpty())
        return {};
    const QString place = placeOf(file);
    const QStringView below = PathString::folder(place);
    return below.isEmpty() ? m_top : PathString::join(m_top, below);
}

QString OutTree::pathOf(const QString &file) const
{
    return PathString::join(folderOf(file), PathString::lastComponent(file));
}

/// Relative to the top of the tree.
QString OutTree::placeOf(const QString &file) const
{
    const Root *first = nullptr;
    qsizetype length = 0;
    for (QStringView path = file; !path.isEmpty(); path = PathString::folder(path)) {
        const auto root =
            m_lengths.contains(path.size()) ? m_roots.constFind(path.toString()) : m_roots.constEnd();
        if (root != m_roots.constEnd() && (first == nullptr || root->rank < first->rank)) {
            first = &*root;
            length = path.size();
        }
        // What stands before it is no folder above the file.
        if (path.size() == 1 || PathString::lastComponent(path) == u"..")
            break;
    }
    if (first != nullptr && first->isListed)
        return QDir::cleanPath(file).sliced(m_workingFolder.size());
    if (first == nullptr || length == file.size())
        return PathString::lastComponent(file).toString();
    return file.sliced(file[length] == u'/' ? length + 1 : length);
}

bool OutTree::isBeside(const QString &folder) const
{
    const QByteArray real = isWanted() ? realPath(RawBytes::encoded(folder)) : QByteArray();
    return !real.isEmpty() &&
           realPath(RawBytes::encoded(folderOf(PathString::join(folder, u"file")))) == real;
}

Descriptor OutTree::openFolderOf(const QString &path, QString &error) const
{
    const QByteArray top = RawBytes::encoded(m_top);
    const QByteArray below = RawBytes::encoded(PathString::folder(path).sliced(m_top.size()).toString());
    Descriptor folder = makeFolders(top, 0777) ? openFolderBelow(top, below) : Descriptor();
    if (const int number = errno; !folder.isOpen()) {
        error = u"the folder %1 cannot be made: %2"_s.arg(PathString::folder(path),
                                                          number == ELOOP ? u"a symbolic link is in its way"_s
                                                                          : qt_error_string(number));
        return folder;
    }
    for (const QString &name :
         {path, PathString::withExtension(path, u"brevantgziptemp")}) { // as cp(1) writes it
        const QByteArray bytes = RawBytes::encoded(PathString::lastComponent(name).toString());
        struct stat status {};
        if (::fstatat(folder.number(), bytes.constData(), &status, AT_SYMLINK_NOFOLLOW) == 0 &&
            S_ISLNK(status.st_mode)) {
            error = u"%1 is a symbolic link, and none is followed in --out-dir"_s.arg(name);
            return Descriptor();
        }
    }
    return folder;
}

} // namespace brevant
