// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/PathRules.h"

#include "cli/CommandLine.h"
#include "files/Folders.h"
#include "files/PathString.h"
#include "files/RawBytes.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

#include <QDir>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

constexpr QStringView foreignFolders[]{u"node_modules", u".git", u".hg", u".svn"};

/// The folder or the next one above it that is the top of a repository; the folder itself if there is none.
QString repositoryOf(const QString &folder)
{
    const QString real = RawBytes::decoded(realPath(RawBytes::encoded(folder)));
    for (QStringView top = real; !top.isEmpty(); top = PathString::folder(top)) {
        if (isRepository(top.toString()))
            return top.toString();
        if (top.size() == 1)
            break;
    }
    return folder;
}

QByteArray outputFolder(const SettingsStore &settings)
{
    const QString folder = settings.stringForKey(selectedFolderKeyString).value_or(QString());
    return settings.isTrue(sameFolderKeyString) || folder.isEmpty() ? QByteArray()
                                                                    : realPath(RawBytes::encoded(folder));
}

} // namespace

PathRules::PathRules(const CommandLine &line, const SettingsStore &settings)
    : m_line(line), m_outputFolder(outputFolder(settings))
{
    m_patterns.push_back({line.exclude, line.include, PathString::join(QDir::currentPath(), {})});
    if (!line.projectFolder.isEmpty())
        m_patterns.push_back(
            {line.projectExclude, line.projectInclude, PathString::join(line.projectFolder, {})});
}

void PathRules::Patterns::turnTo(const QString &newTop)
{
    top = newTop;
    const QString clean = QDir::cleanPath(top);
    const bool isBelow = clean.startsWith(folder) && clean != folder;
    topPattern = isBelow ? RawBytes::encoded(clean.sliced(folder.size())) : QByteArray();
}

bool PathRules::Patterns::excludesTop() const
{
    return !topPattern.isEmpty() && exclude.covers(topPattern, leadsToFolder(RawBytes::encoded(top)));
}

bool PathRules::Patterns::excludes(const QString &relativePath, bool isFolder) const
{
    return !exclude.isEmpty() && exclude.matches(pathOf(relativePath), isFolder);
}

bool PathRules::Patterns::includes(const QString &relativePath) const
{
    return include.isEmpty() || include.covers(pathOf(relativePath), false);
}

/// A path as patterns see it. A single file that they do not count to goes by its name.
QByteArray PathRules::Patterns::pathOf(const QString &relativePath) const
{
    const QByteArray below = RawBytes::encoded(relativePath);
    if (topPattern.isEmpty())
        return below.isEmpty() ? RawBytes::encoded(PathString::lastComponent(top).toString()) : below;
    return below.isEmpty() ? topPattern : topPattern + '/' + below;
}

QString PathRules::askGit(const QStringList &paths)
{
    if (!m_line.gitignore)
        return {};
    QHash<QString, QString> repositories; // of the folders of files
    QHash<QString, QStringList> files;    // by their repositories
    for (const QString &path : paths) {
        if (leadsToFolder(RawBytes::encoded(path))) {
            if (QString error = m_ignored.askBelow(path); !error.isEmpty())
                return error;
            continue;
        }
        const QString folder = PathString::folder(path).toString();
        if (!repositories.contains(folder))
            repositories.insert(folder, repositoryOf(folder));
        files[repositories.value(folder)].append(path);
    }
    for (const auto &[folder, named] : files.asKeyValueRange()) {
        if (QString error = m_ignored.ask(folder, named); !error.isEmpty())
            return error;
    }
    return {};
}

bool PathRules::turnTo(const QString &top)
{
    m_top = top;
    for (Patterns &patterns : m_patterns)
        patterns.turnTo(top);
    const QByteArray real = m_outputFolder.isEmpty() ? QByteArray() : realPath(RawBytes::encoded(top)) + '/';
    m_outputFolderBelow = real.size() > 1 && m_outputFolder.startsWith(real)
                              ? RawBytes::decoded(m_outputFolder.sliced(real.size()))
                              : QString();
    const bool isOut = m_ignored.contains(top) || std::ranges::any_of(m_patterns, &Patterns::excludesTop);
    m_hasExcluded |= isOut;
    return !isOut;
}

bool PathRules::takesFile(const QString &relativePath)
{
    const bool isTaken = !isExcluded(relativePath, false) &&
                         std::ranges::all_of(m_patterns, [&relativePath](const Patterns &patterns) {
                             return patterns.includes(relativePath);
                         });
    m_hasExcluded |= !isTaken;
    return isTaken;
}

bool PathRules::takesFolder(const QString &relativePath)
{
    const bool isForeign = isLeftOutByDefault(relativePath);
    const bool isOut = isForeign || isExcluded(relativePath, true);
    m_hasLeftOutFolders |= isForeign;
    m_hasExcluded |= isOut && !isForeign;
    if (!isOut && m_line.gitignore && isRepository(absolutePath(relativePath)) && m_error.isEmpty())
        m_error = m_ignored.askBelow(absolutePath(relativePath));
    return !isOut;
}

QStringList PathRules::reasons() const
{
    QStringList options;
    if (!m_line.exclude.isEmpty())
        options.append(u"--exclude"_s);
    if (!m_line.include.isEmpty())
        options.append(u"--include"_s);
    if (m_line.gitignore)
        options.append(u"--gitignore"_s);
    if (!m_line.projectExclude.isEmpty() || !m_line.projectInclude.isEmpty())
        options.append(u"brevant.json"_s);
    QStringList reasons;
    if (m_hasExcluded)
        reasons.append(u"some are left out (%1)"_s.arg(options.join(u", ")));
    if (m_hasLeftOutFolders)
        reasons.append(
            u"node_modules, .git, .hg, .svn and the folder of the outputs are not searched (--all)"_s);
    return reasons;
}

bool PathRules::isLeftOutByDefault(const QString &relativePath) const
{
    const bool isOutputFolder = !m_outputFolderBelow.isEmpty() && relativePath == m_outputFolderBelow;
    if (m_line.all) // each run would mirror the outputs of the one before once more
        return isOutputFolder && !m_line.outDir.isEmpty();
    return isOutputFolder || std::ranges::find(foreignFolders, PathString::lastComponent(relativePath)) !=
                                 std::end(foreignFolders);
}

bool PathRules::isExcluded(const QString &relativePath, bool isFolder) const
{
    return (m_line.gitignore && m_ignored.contains(absolutePath(relativePath))) ||
           std::ranges::any_of(m_patterns, [&relativePath, isFolder](const Patterns &patterns) {
               return patterns.excludes(relativePath, isFolder);
           });
}

QString PathRules::absolutePath(const QString &relativePath) const
{
    return relativePath.isEmpty() ? m_top : PathString::join(m_top, relativePath);
}

} // namespace brevant
