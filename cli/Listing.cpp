// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Listing.h"

#include "cli/CommandLine.h"
#include "cli/PrintedRun.h"
#include "cli/TerminalText.h"
#include "files/Folders.h"
#include "files/PathString.h"
#include "files/RawBytes.h"
#include "queue/FileKind.h"
#include "queue/FileQueue.h"
#include "queue/FolderWalk.h"
#include "queue/OutputPath.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

#include <algorithm>
#include <utility>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

/// Those of `files` that are outputs of others among them, by the settings.
QSet<QString> outputsAmong(const QStringList &files, const SettingsStore &settings)
{
    const QString suffix = settings.stringForKey(suffixKeyString).value_or(QString());
    const auto mayBeOutput = [&](const QString &file) { return PathString::stem(file).endsWith(suffix); };
    if (suffix.isEmpty() || !settings.isTrue(suffixSwitcherKeyString) ||
        !settings.isTrue(sameFolderKeyString) || std::ranges::none_of(files, mayBeOutput))
        return {};
    OutputPath outputPath(settings);
    QSet<QString> outputs;
    for (const QString &file : files)
        outputs.insert(outputPath.next(file).value_or(QString()));
    return outputs;
}

QString whyNothingIsListed(const SettingsStore &settings)
{
    QStringList reasons;
    const auto off = [&](QLatin1StringView key, const QString &kinds) {
        if (!settings.boolForKey(key))
            reasons.append(u"%1 files are off (%2)"_s.arg(kinds, key));
    };
    off(enableHTMLCheckerKeyString, u"HTML"_s);
    off(enablePHPCheckerKeyString, u"PHP and PHTML"_s);
    if (settings.boolForKey(filterCheckerKeyString))
        reasons.append(u"files named .min are skipped (%1)"_s.arg(filterCheckerKeyString));
    const QString text = u"Nothing to minify: no file of a kind that is on was found"_s;
    return (reasons.isEmpty() ? text : text + u"; "_s + reasons.join(u", ")) + u".\n"_s;
}

} // namespace

void Listing::add(const QString &path)
{
    QStringList found;
    walkFolder(
        path,
        [&](const QString &relativePath) {
            if (QString file = PathString::join(path, relativePath); isListed(file))
                found.append(std::move(file));
        },
        [&](const QString &relativePath, int error) {
            const QString folder = relativePath.isEmpty() ? path : PathString::join(path, relativePath);
            m_unreadable.append(u"%1 cannot be read: %2"_s.arg(folder, qt_error_string(error)));
        },
        RawBytes::decoded);
    const QSet<QString> outputs = m_line.all ? QSet<QString>() : outputsAmong(found, m_settings);
    for (const QString &file : std::as_const(found)) {
        if (outputs.contains(file))
            m_outputs.append(file);
        else
            append(file);
    }
    if (isListed(path))
        append(path);
}

bool Listing::isListed(const QString &path)
{
    if (!isAccepted(path, m_settings, m_line.also))
        return false;
    struct stat status {};
    if (::stat(RawBytes::encoded(path).constData(), &status) != 0 || !S_ISDIR(status.st_mode))
        return true;
    m_folders.append(path);
    return false;
}

void Listing::append(const QString &file)
{
    const qsizetype before = m_taken.size();
    m_taken.insert(FileMarks::ofPlace(file));
    if (m_taken.size() == before)
        return;
    m_queue.append(file);
    if (RawBytes::areIn(file))
        m_unnameable.append(file);
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
        TerminalText::print(stderr, whyNothingIsListed(m_settings));
}

} // namespace brevant
