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
    isModern = isModernChosen(settings);
    suffixSwitch = settings.objectForKey(suffixSwitcherKeyString);
    sameFolder = settings.isTrue(sameFolderKeyString);
    suffix = settings.stringForKey(suffixKeyString).value_or(QString());
    folder = settings.stringForKey(selectedFolderKeyString).value_or(QString());
}

void OutputPath::Naming::next(const QString &entry, std::optional<QStringView> extension)
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
    path = before % stem % after % u'.' % *extension;
}

OutputPath::OutputPath(const SettingsStore &settings, Reading reading)
    : m_settings(settings), m_reading(reading)
{
    m_atStart.read(settings);
    m_now = m_atStart;
}

std::optional<QString> OutputPath::next(const QString &entry)
{
    if (m_reading == Reading::Anew)
        m_now.read(m_settings);
    const FileKind *const kind = m_now.isModern ? anyKindOf(entry) : kindOf(entry);
    if (kind)
        m_extension = kind->extension;
    m_now.next(entry, m_extension);
    if (m_reading == Reading::Anew)
        m_atStart.next(entry, m_extension);
    return m_now.path;
}

} // namespace brevant
