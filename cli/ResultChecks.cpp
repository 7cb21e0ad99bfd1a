// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/ResultChecks.h"

#include "engine/CompressorCommand.h"
#include "engine/EntryResult.h"
#include "files/FileBytes.h"
#include "files/Folders.h"
#include "settings/SettingsKeys.h"

#include <QFile>

namespace brevant {

void ResultChecks::entryTaken(const QString &entry, const std::optional<QString> &output)
{
    if (isModernChosen(m_settings.of(entry)))
        return;
    const bool isReplaced = output && FileMarks::areOfSameFile(entry, *output);
    m_taken.insert(entry, isReplaced ? FileBytes::readAll(QFile::encodeName(entry)) : std::nullopt);
}

std::optional<CheckedFile> ResultChecks::entryEnded(const EntryResult &result)
{
    if (!m_taken.contains(result.source))
        return std::nullopt;
    const std::optional<QByteArray> source = m_taken.take(result.source);
    if (!result.isMinified() || !result.output)
        return std::nullopt;
    const SettingsStore &settings = m_settings.of(result.source);
    const TextEncoding encoding = textEncodingNamed(settings.stringForKey(selectedEncodingKeyString));
    return checkFile(result.source, *result.output, encoding, source);
}

} // namespace brevant
