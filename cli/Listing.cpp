// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Listing.h"

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
            m_unreadable.append(QStringLiteral("%1 cannot be read: %2")
                                    .arg(relativePath.isEmpty() ? path : PathString::join(path, relativePath),
                                         qt_error_string(error)));
        },
        RawBytes::decoded);
    const QSet<QString> outputs = m_all ? QSet<QString>() : outputsAmong(found, m_settings);
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
    if (!isAccepted(path, m_settings))
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

QStringList Listing::outputs() const
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

} // namespace brevant
