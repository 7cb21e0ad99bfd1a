// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "queue/OutputPath.h"

#include "queue/FileKind.h"
#include "queue/PathString.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

namespace brevant {

std::optional<QString> OutputPath::next(const QString &entry)
{
    if (const std::optional<FileKind> kind = kindOf(entry))
        m_extension = extensionOf(*kind).toString();

    // Read once: a switch that the user turns between two readings would be neither true nor false.
    const QJsonValue suffixSwitch = m_settings.objectForKey(suffixSwitcherKeyString);
    if (!suffixSwitch.isBool())
        return m_path;
    const bool withSuffix = suffixSwitch.toBool();
    if (!m_extension) {
        m_path.reset();
        return m_path;
    }

    QString stem;
    if (m_settings.isTrue(sameFolderKeyString)) {
        stem = PathString::stem(entry).toString();
    } else {
        // One "/" is put between, whatever the folder ends with.
        stem = m_settings.stringForKey(selectedFolderKeyString).value_or(QString());
        stem.append(u'/');
        stem.append(PathString::stem(PathString::lastComponent(entry)));
    }
    if (withSuffix)
        stem += m_settings.stringForKey(suffixKeyString).value_or(QString());
    m_path = PathString::withExtension(stem, *m_extension);
    return m_path;
}

} // namespace brevant
