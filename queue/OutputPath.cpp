// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "queue/OutputPath.h"

#include "files/PathString.h"
#include "queue/FileKind.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

#include <QStringBuilder>

namespace brevant {

void OutputPath::Naming::read(const SettingsStore &settings)
{
    suffixSwitch = settings.objectForKey(suffixSwitcherKeyString);
    sameFolder = settings.isTrue(sameFolderKeyString);
    suffix = settings.stringForKey(suffixKeyString).value_or(QString());
    folder = settings.stringForKey(selectedFolderKeyString).value_or(QString());
}

void OutputPath::Naming::next(const QString &entry, const std::optional<QString> &extension)
{
    if (!suffixSwitch.isBool())
        return;
    if (!extension) {
        path.reset();
        return;
    }
    const QString before = sameFolder ? QString() : folder + u'/'; // whatever the folder ends with
    const QStringView stem = PathString::stem(sameFolder ? entry : PathString::lastComponent(entry));
    const QString after = suffixSwitch.toBool() ? suffix : QString();
    path = PathString::withExtension(QString(before % stem % after), *extension);
}

OutputPath::OutputPath(const SettingsStore &settings) : m_settings(settings)
{
    m_atStart.read(settings);
}

std::optional<QString> OutputPath::next(const QString &entry)
{
    const FileKind *const kind = isModernChosen(m_settings) ? anyKindOf(entry) : kindOf(entry);
    if (kind)
        m_extension = kind->extension.toString();
    m_now.read(m_settings);
    m_now.next(entry, m_extension);
    m_atStart.next(entry, m_extension);
    return m_now.path;
}

} // namespace brevant
