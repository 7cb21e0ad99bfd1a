// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/OutputFiles.h"

#include "engine/EntryResult.h"
#include "files/PathString.h"
#include "queue/FileKind.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace brevant {

QStringList withCopies(const QString &output, const QStringList &extensions)
{
    QStringList files{output};
    for (const QString &extension : extensions)
        files.append(PathString::withExtension(output, extension));
    return files;
}

WantedCopies::WantedCopies(const SettingsStore &settings)
    : m_hasMaps(isModernChosen(settings) && settings.isTrue(sourceMapCheckerKeyString))
{
    if (settings.boolForKey(gzipCheckerKeyString))
        m_packed.append(u"gz"_s);
    if (settings.isTrue(brotliCheckerKeyString))
        m_packed.append(u"br"_s);
}

QStringList WantedCopies::extensionsFor(const FileKind &kind) const
{
    const bool hasMap = m_hasMaps && kind.family != KindFamily::Markup;
    return hasMap ? m_packed + QStringList{u"map"_s} : m_packed;
}

QStringList writtenFiles(const EntryResult &result, const SettingsStore &settings)
{
    const FileKind *const kind = anyKindOf(result.source);
    if (!result.isMinified() || !result.output || kind == nullptr)
        return {};
    QStringList made;
    if (result.gzipSize)
        made.append(u"gz"_s);
    if (result.brotliSize)
        made.append(u"br"_s);
    if (WantedCopies(settings).extensionsFor(*kind).contains(u"map"_s) &&
        QFile::exists(PathString::withExtension(*result.output, u"map")))
        made.append(u"map"_s);
    return withCopies(*result.output, made);
}

} // namespace brevant
