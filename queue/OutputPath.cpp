// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "queue/OutputPath.h"

#include "files/PathString.h"
#include "queue/FileKind.h"
#include "settings/SettingsKeys.h"

#include <QStringBuilder>

namespace brevant {

OutputPath::Naming::Naming(const SettingsStore &settings)
    : isModern(isModernChosen(settings)), suffixSwitch(settings.objectForKey(suffixSwitcherKeyString)),
      sameFolder(settings.isTrue(sameFolderKeyString)),
      suffix(settings.stringForKey(suffixKeyString).value_or(QString())),
      folder(settings.stringForKey(selectedFolderKeyString).value_or(QString()))
{
}

/// `path`: that of the entry before.
void OutputPath::Naming::next(const QString &entry, std::optional<QStringView> extension,
                              std::optional<QString> &path) const
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

OutputPath::OutputPath(const EntrySettings &settings, Reading reading)
    : m_settings(settings), m_reading(reading), m_atStart(settings)
{
}

std::optional<QString> OutputPath::next(const QString &entry)
{
    const Naming &atStart = m_atStart.of(entry);
    const std::optional<Naming> now =
        m_reading == Reading::Anew ? std::optional<Naming>(m_settings.of(entry)) : std::nullopt;
    const FileKind *const kind = (now ? *now : atStart).isModern ? anyKindOf(entry) : kindOf(entry);
    if (kind)
        m_extension = kind->extension;
    if (now)
        atStart.next(entry, m_extension, m_pathAtStart);
    (now ? *now : atStart).next(entry, m_extension, m_path);
    return m_path;
}

} // namespace brevant
