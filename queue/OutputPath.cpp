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
        m_extension = extensionOf(*kind);

    const bool withSuffix = m_settings.isTrue(suffixSwitcherKeyString);
    if (!withSuffix && !m_settings.isFalse(suffixSwitcherKeyString))
        return m_path;
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
