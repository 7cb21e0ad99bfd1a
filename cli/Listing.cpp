// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Listing.h"

#include "cli/ChangedPaths.h"
#include "cli/CommandLine.h"
#include "cli/OutputConflicts.h"
#include "cli/OutputsAmong.h"
#include "cli/PrintedRun.h"
#include "cli/TerminalText.h"
#include "files/Folders.h"
#include "files/PathString.h"
#include "files/RawBytes.h"
#include "queue/FileQueue.h"
#include "settings/SettingsKeys.h"

#include <QDir>
#include <QStringBuilder>

#include <algorithm>
#include <functional>
#include <iterator>
#include <utility>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

template <typename File, typename Path>
void sortByBytes(std::vector<File> &files, Path path)
{
    std::vector<std::pair<QByteArray, File>> named;
    named.reserve(files.size());
    for (File &file : files) {
        QByteArray bytes = RawBytes::encoded(std::invoke(path, file));
        named.emplace_back(std::move(bytes), std::move(file));
    }
    std::ranges::sort(named, {}, [](const auto &pair) -> const QByteArray & { return pair.first; });
    std::ranges::transform(named, files.begin(), [](auto &pair) { return std::move(pair.second); });
}

} // namespace

Listing::Listing(FileQueue &queue, const EntrySettings &settings, const CommandLine &line)
    : m_queue(queue), m_settings(settings), m_line(line), m_kinds(settings.common(), line.also),
      m_rules(line, settings.common()), m_tree(line)
{
}

QString Listing::fill()
{
    QStringList paths;
    for (const QString &path : m_line.paths)
        paths.append(PathString::absolute(path));
    if (m_changed != nullptr)
        paths.removeIf([this](const QString &path) { return m_changed->foldersBelow(path).isEmpty(); });
    if (QString error = m_rules.askGit(paths); !error.isEmpty())
        return error;
    for (const QString &path : std::as_const(paths))
        add(path);
    m_linksPassedOver.removeDuplicates();
    if (!m_rules.error().isEmpty())
        return m_rules.error();
    if (m_line.sort) {
        sortByBytes(m_files, std::identity());
        sortByBytes(m_copies, &FileCopy::found);
    }
    if (m_tree.isWanted()) {
        if (QString error = outputConflict(m_files, m_copies, m_settings); !error.isEmpty())
            return error;
    }
    std::vector<QString> part;
    if (m_line.shard.count > 1) {
        takeShardOfCopies();
        part = filesOfShard(m_files, m_line.shard, QDir::currentPath());
    }
    for (const QString &file : m_line.shard.count > 1 ? std::as_const(part) : std::as_const(m_files)) {
        m_queue.append(file);
        if (RawBytes::areIn(file))
            m_unnameable.append(file);
    }
    return {};
}

void Listing::add(const QString &path)
{
    if (!m_rules.turnTo(path))
        return;
    m_taken.beginSearch();
    RestOfTree rest(path);
    const QStringList found = filesBelow(path, rest);
    const std::vector<bool> areOutputs = m_line.all || found.isEmpty()
                                             ? std::vector<bool>(static_cast<std::size_t>(found.size()))
                                             : outputsAmong(found, m_settings, m_tree.isBeside(path));
    for (qsizetype i = 0; i < found.size(); ++i) {
        if (areOutputs[static_cast<std::size_t>(i)])
            m_outputs.append(found[i]);
        else if (isChanged(found[i]))
            append(found[i]);
    }
    if (isChanged(path) && isListed(path, {}, EntryType::Unknown))
        append(path);
    else if (isRest(path, {}, EntryType::Unknown))
        rest.add({}, EntryType::Unknown);
    addCopies(rest);
}

void Listing::addCopies(const RestOfTree &rest)
{
    for (FileCopy &copy : rest.copies()) {
        copy.target = m_tree.pathOf(copy.found);
        if (isChanged(copy.found) && m_taken.take(copy.found))
            m_copies.push_back(std::move(copy));
    }
    m_linksPassedOver += rest.passedOver();
}

/// Leaves what is that of this part.
void Listing::takeShardOfCopies()
{
    std::vector<QString> found;
    std::ranges::transform(m_copies, std::back_inserter(found), &FileCopy::found);
    found = filesOfShard(found, m_line.shard, QDir::currentPath());
    const QSet<QString> taken(found.begin(), found.end());
    std::erase_if(m_copies, [&](const FileCopy &copy) { return !taken.contains(copy.found); });
}

/// All that is below the top, or, of what has changed, all that is in the same folders.
QStringList Listing::filesBelow(const QString &top, RestOfTree &rest)
{
    QStringList found;
    for (const QString &folder : m_changed != nullptr ? m_changed->foldersBelow(top) : QStringList(top)) {
        if (isReached(top, folder))
            walk(top, folder, found, rest);
    }
    return found;
}

/// Adds what is in a folder at or below the top, and, where that has changed as a whole, further down.
void Listing::walk(const QString &top, const QString &folder, QStringList &found, RestOfTree &rest)
{
    const QString way = folder == top ? QString() : folder.sliced(PathString::join(top, {}).size());
    const auto fromTop = [&way](const QString &path) { return way.isEmpty() ? path : way % u'/' % path; };
    FolderWalk walk;
    walk.visit = [&](const QString &path, EntryType type) {
        if (isListed(top, fromTop(path), type)) {
            found.append(PathString::join(folder, path));
            if (m_line.copyRest)
                rest.addMinified(fromTop(path));
        } else if (isRest(top, fromTop(path), type)) {
            rest.add(fromTop(path), type);
        }
    };
    walk.unreadable = [&](const QString &path, int error) {
        const QString unread = path.isEmpty() ? folder : PathString::join(folder, path);
        m_unreadable.append(u"%1 cannot be read: %2"_s.arg(unread, qt_error_string(error)));
    };
    walk.isEntered = [&](const QString &path) {
        const bool isEntered =
            m_rules.takesFolder(fromTop(path)) && isChanged(PathString::join(folder, path));
        if (isEntered && m_folderSeen)
            m_folderSeen(PathString::join(folder, path));
        return isEntered;
    };
    walk.decode = RawBytes::decoded;
    if (m_folderSeen)
        m_folderSeen(folder);
    walkFolder(folder, walk);
}

/// Whether a search of everything below the top would come to the folder.
bool Listing::isReached(const QString &top, const QString &folder)
{
    const qsizetype start = PathString::join(top, {}).size();
    for (qsizetype end = start; end <= folder.size(); ++end) {
        if ((end == folder.size() || folder[end] == u'/') && end > start &&
            !m_rules.takesFolder(folder.sliced(start, end - start)))
            return false;
    }
    return true;
}

bool Listing::isChanged(const QString &path) const
{
    return m_changed == nullptr || m_changed->hold(path);
}

bool Listing::isListed(const QString &top, const QString &relativePath, EntryType type)
{
    if (!m_kinds.accept(relativePath.isEmpty() ? top : relativePath))
        return false;
    if (type == EntryType::File)
        return m_rules.takesFile(relativePath);
    const QString path = relativePath.isEmpty() ? top : PathString::join(top, relativePath);
    if (type != EntryType::Folder && !leadsToFolder(RawBytes::encoded(path)))
        return m_rules.takesFile(relativePath);
    if (type != EntryType::Folder || m_rules.takesFolder(relativePath))
        m_folders.append(path);
    return false;
}

/// Whether the path, relative to `top`, may be copied, unless it leads to a folder.
bool Listing::isRest(const QString &top, const QString &relativePath, EntryType type)
{
    if (!m_line.copyRest || type == EntryType::Folder ||
        m_kinds.accept(relativePath.isEmpty() ? top : relativePath))
        return false;
    return (!relativePath.isEmpty() || !leadsToFolder(RawBytes::encoded(top))) &&
           m_rules.takesFile(relativePath);
}

void Listing::append(const QString &file)
{
    if (m_taken.take(file))
        m_files.push_back(file);
}

QStringList Listing::passedOver() const
{
    TakenFiles told = m_taken;
    told.beginSearch();
    QStringList outputs;
    std::ranges::copy_if(m_outputs, std::back_inserter(outputs),
                         [&told](const QString &file) { return told.take(file); });
    return outputs;
}

QString Listing::whyNothingIsListed() const
{
    if (!m_files.empty())
        return u"Nothing to minify: the other parts hold all files.\n"_s;
    QStringList reasons;
    const auto off = [&](QLatin1StringView key, const QString &kinds) {
        if (!m_settings.common().boolForKey(key))
            reasons.append(u"%1 files are off (%2)"_s.arg(kinds, key));
    };
    off(enableHTMLCheckerKeyString, u"HTML"_s);
    off(enablePHPCheckerKeyString, u"PHP and PHTML"_s);
    if (m_settings.common().boolForKey(filterCheckerKeyString))
        reasons.append(u"files named .min are skipped (%1)"_s.arg(filterCheckerKeyString));
    reasons += m_rules.reasons();
    const QString text = u"Nothing to minify: no file of a kind that is on was found"_s;
    return (reasons.isEmpty() ? text : text + u"; "_s + reasons.join(u", ")) + u".\n"_s;
}

void Listing::printWhatIsMissing() const
{
    const bool isList = m_line.action == CommandLine::Action::List;
    for (const QString &sentence : m_unreadable)
        TerminalText::printError(sentence);
    if (m_changed != nullptr)
        return;
    for (const QString &file : isList ? m_unnameable : QStringList())
        TerminalText::printError(u"%1: not minified: %2"_s.arg(file, notUtf8()));
    for (const QString &folder : m_line.quiet ? QStringList() : m_folders)
        TerminalText::printError(folder + u" is a folder"_s);
    for (const QString &link : m_line.quiet ? QStringList() : m_linksPassedOver)
        TerminalText::printError(u"%1 is not copied: this link leads to no file of its tree"_s.arg(link));
    const bool isOutputTold = isList && !m_line.quiet;
    if (const QStringList outputs = isOutputTold ? passedOver() : QStringList(); !outputs.isEmpty()) {
        const QString one = u"1 file passed over, as the output of another (--all takes all):\n"_s;
        const QString several = u"%1 files passed over, as outputs of others (--all takes all):\n"_s;
        QString text = outputs.size() == 1 ? one : several.arg(outputs.size());
        for (const QString &output : outputs)
            text += printable(output) + u'\n';
        TerminalText::print(stderr, text);
    }
    if (m_queue.isEmpty() && m_unreadable.isEmpty())
        TerminalText::print(stderr, whyNothingIsListed());
}

} // namespace brevant
