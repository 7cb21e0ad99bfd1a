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

/// `path`: that of the entry before. `ownFolder`: where the output goes whatever the settings say, or empty.
void OutputPath::Naming::next(const QString &entry, std::optional<QStringView> extension,
                              const QString &ownFolder, std::optional<QString> &path) const
{
    if (!suffixSwitch.isBool())
        return;
    if (!extension) {
        path.reset();
        return;
    }
    if (!ownFolder.isEmpty() && !suffixSwitch.toBool()) { // pages go on to find it by its own name
        path = PathString::join(ownFolder, PathString::lastComponent(entry));
        return;
    }
    const bool isBeside = sameFolder && ownFolder.isEmpty();
    const QString before = isBeside              ? QString()
                           : ownFolder.isEmpty() ? folder + u'/' // whatever the folder ends with
                                                 : PathString::join(ownFolder, {});
    const QStringView stem = PathString::stem(isBeside ? entry : PathString::lastComponent(entry));
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
    const QString ownFolder = m_settings.outputFolderOf(entry);
    if (now)
        atStart.next(entry, m_extension, ownFolder, m_pathAtStart);
    (now ? *now : atStart).next(entry, m_extension, ownFolder, m_path);
    return m_path;
}

} // namespace brevant
