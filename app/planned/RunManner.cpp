// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/planned/RunManner.h"

#include "files/PathString.h"
#include "files/RawBytes.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

#include <QCoreApplication>
#include <QStringList>

namespace brevant {

using namespace Qt::StringLiterals;

namespace {

QString translated(const char *text)
{
    return QCoreApplication::translate("RunManner", text);
}

} // namespace

RunManner::RunManner(const SettingsStore &settings)
    : m_isModern(isModernChosen(settings)), m_hasGzip(settings.boolForKey(gzipCheckerKeyString)),
      m_hasBrotli(settings.isTrue(brotliCheckerKeyString)),
      m_folder(printable(
          PathString::withTilde(settings.stringForKey(selectedFolderKeyString).value_or(QString()))))
{
    if (settings.boolForKey(suffixSwitcherKeyString))
        m_suffix = settings.stringForKey(suffixKeyString).value_or(QString());
    m_place = !settings.isTrue(sameFolderKeyString) ? Place::Folder
              : m_suffix.isEmpty()                  ? Place::Source
                                                    : Place::Beside;
}

QString RunManner::compressors() const
{
    return m_isModern ? translated("Modern compressors") : translated("Classic compressors");
}

QString RunManner::ofRun() const
{
    const QString outputs = m_place == Place::Folder   ? translated("outputs in %1").arg(m_folder)
                            : m_place == Place::Source ? translated("sources replaced")
                                                       : translated("outputs beside the sources");
    return compressors() + u", "_s + outputs;
}

QString RunManner::ofPlan() const
{
    QStringList parts{compressors(), m_place == Place::Folder   ? translated("into %1").arg(m_folder)
                                     : m_place == Place::Source ? translated("replacing the sources")
                                                                : translated("beside the sources")};
    if (!m_suffix.isEmpty())
        parts.append(translated("suffix %1").arg(printable(m_suffix)));
    if (m_hasGzip || m_hasBrotli)
        parts.append(m_hasGzip && m_hasBrotli ? translated("with gzip and Brotli copies")
                     : m_hasGzip              ? translated("with gzip copies")
                                              : translated("with Brotli copies"));
    return translated("%1. Nothing has been written yet.").arg(parts.join(u", "_s));
}

QString RunManner::ofMinify(int count) const
{
    if (count == 0)
        return translated("Minify every file in the list");
    const bool isOne = count == 1;
    if (m_place == Place::Source)
        return isOne ? translated("Replaces 1 source") : translated("Replaces %1 sources").arg(count);
    QString copies =
        isOne ? translated("Writes 1 minified copy") : translated("Writes %1 minified copies").arg(count);
    if (m_place == Place::Folder)
        return translated("%1 into %2").arg(copies, m_folder);
    if (m_suffix.contains(u'/')) // each goes into a folder of its own
        return copies;
    return isOne ? translated("%1 beside its source").arg(copies)
                 : translated("%1 beside their sources").arg(copies);
}

} // namespace brevant
