// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/KeptTimes.h"

#include "cli/OutputFiles.h"
#include "files/Folders.h"
#include "settings/EntrySettings.h"

#include <QFile>

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace brevant {

void KeptTimes::entryTaken(const QString &entry)
{
    if (const auto status = statusOf(QFile::encodeName(entry)))
        m_times.insert(entry, status->st_mtim);
}

void KeptTimes::entryEnded(const EntryResult &result)
{
    EntryResult told = result;
    const auto time = m_times.constFind(result.source);
    const bool isWanted = time != m_times.constEnd();
    for (const QString &file :
         isWanted ? writtenFiles(result, m_settings.of(result.source)) : QStringList()) {
        const timespec times[]{{0, UTIME_OMIT}, *time};
        if (::utimensat(AT_FDCWD, QFile::encodeName(file).constData(), times, 0) != 0)
            told.notes.append(
                u"the time of %1 cannot be that of its source: %2"_s.arg(file, qt_error_string(errno)));
    }
    m_times.remove(result.source);
    m_next.entryEnded(told);
}

} // namespace brevant
