// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Listing.h"

#include "cli/CommandLine.h"
#include "cli/PrintedRun.h"
#include "cli/TerminalText.h"
#include "files/Folders.h"
#include "files/PathString.h"
#include "files/RawBytes.h"
#include "queue/FileQueue.h"
#include "queue/OutputPath.h"
#include "settings/SettingsKeys.h"

#include <QDir>
#include <QStringBuilder>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

/// The suffix of outputs beside their sources; empty if there are none.
struct SuffixBeside {
    explicit SuffixBeside(const SettingsStore &settings)
    {
        if (settings.isTrue(suffixSwitcherKeyString) && settings.isTrue(sameFolderKeyString))
            text = settings.stringForKey(suffixKeyString).value_or(QString());
    }

    QString text;
};

/// Those of `files` that are outputs of others among them, by the settings.
QSet<QString> outputsAmong(const QStringList &files, const EntrySettings &settings)
{
    BySettings<SuffixBeside> suffixes(settings);
    QStringList used;
    for (const QString &file : files) {
        if (const QString &suffix = suffixes.of(file).text; !suffix.isEmpty() && !used.contains(suffix))
            used.append(suffix);
    }
    QSet<QStringView> sourceStems; // of files named like outputs
    for (const QString &file : used.isEmpty() ? QStringList() : files) {
        for (const QString &suffix : used) {
            if (const QStringView stem = PathString::stem(file); stem.endsWith(suffix))
                sourceStems.insert(stem.chopped(suffix.size()));
        }
    }
    OutputPath outputPath(settings, OutputPath::Reading::Once);
    QSet<QString> outputs;
    for (const QString &file : sourceStems.isEmpty() ? QStringList() : files) {
        if (sourceStems.contains(PathString::stem(file)) && !suffixes.of(file).text.isEmpty())
            outputs.insert(outputPath.next(file).value_or(QString()));
    }
    return outputs;
}

void sortByBytes(std::vector<QString> &files)
{
    std::vector<std::pair<QByteArray, QString>> named;
    named.reserve(files.size());
    for (QString &file : files)
        named.emplace_back(RawBytes::encoded(file), std::move(file));
    std::ranges::sort(named, {}, [](const auto &pair) -> const QByteArray & { return pair.first; });
    std::ranges::transform(named, files.begin(), [](auto &pair) { return std::move(pair.second); });
}

} // namespace

Listing::Listing(FileQueue &queue, const EntrySettings &settings, const CommandLine &line)
    : m_queue(queue), m_settings(settings), m_line(line), m_kinds(settings.common(), line.also),
      m_rules(line, settings.common())
{
}

QString Listing::fill()
{
    QStringList paths;
    for (const QString &path : m_line.paths)
        paths.append(PathString::absolute(path));
    if (QString error = m_rules.askGit(paths); !error.isEmpty())
        return error;
    for (const QString &path : std::as_const(paths))
        add(path);
    if (m_line.sort)
        sortByBytes(m_files);
    const bool isShared = m_line.shard.count > 1;
    for (const QString &file :
         isShared ? filesOfShard(m_files, m_line.shard, QDir::currentPath()) : m_files) {
        m_queue.append(file);
        if (RawBytes::areIn(file))
            m_unnameable.append(file);
    }
    return m_rules.error();
}

void Listing::add(const QString &path)
{
    if (!m_rules.turnTo(path))
        return;
    const QStringList found = filesBelow(path);
    const QSet<QString> outputs = m_line.all ? QSet<QString>() : outputsAmong(found, m_settings);
    m_taken.reserve(m_taken.size() + found.size());
    for (const QString &file : found) {
        if (!outputs.isEmpty() && outputs.contains(file))
            m_outputs.append(file);
        else
            append(file);
    }
    if (isListed(path, {}, EntryType::Unknown))
        append(path);
}

QStringList Listing::filesBelow(const QString &top)
{
    QStringList found;
    FolderWalk walk;
    walk.visit = [&](const QString &relativePath, EntryType type) {
        if (isListed(top, relativePath, type))
            found.append(PathString::join(top, relativePath));
    };
    walk.unreadable = [&](const QString &relativePath, int error) {
        const QString folder = relativePath.isEmpty() ? top : PathString::join(top, relativePath);
        m_unreadable.append(u"%1 cannot be read: %2"_s.arg(folder, qt_error_string(error)));
    };
    walk.isEntered = [&](const QString &relativePath) { return m_rules.takesFolder(relativePath); };
    walk.decode = RawBytes::decoded;
    walkFolder(top, walk);
    return found;
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

void Listing::append(const QString &file)
{
    const qsizetype before = m_taken.size();
    m_taken.insert(markOf(file));
    if (m_taken.size() > before)
        m_files.push_back(file);
}

/// Its FileMarks::ofPlace(), for which the disk is asked once for several files of a folder in a row.
QString Listing::markOf(const QString &file)
{
    const QStringView name = PathString::lastComponent(file);
    const QStringView folder = PathString::folder(file);
    if (m_markedFolder != folder || m_folderMark.isEmpty()) {
        m_markedFolder = folder.toString();
        m_folderMark = FileMarks::ofPlace(file).chopped(name.size());
    }
    return m_folderMark % name;
}

QStringList Listing::passedOver() const
{
    QSet<QString> told = m_taken;
    QStringList outputs;
    for (const QString &file : m_outputs) {
        const QString mark = FileMarks::ofPlace(file);
        if (!told.contains(mark))
            outputs.append(file);
        told.insert(mark);
    }
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
    for (const QString &file : isList ? m_unnameable : QStringList())
        TerminalText::printError(u"%1: not minified: %2"_s.arg(file, notUtf8()));
    for (const QString &folder : m_line.quiet ? QStringList() : m_folders)
        TerminalText::printError(folder + u" is a folder"_s);
    if (const QStringList outputs = passedOver(); isList && !m_line.quiet && !outputs.isEmpty()) {
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
