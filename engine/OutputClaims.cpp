// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/OutputClaims.h"

#include "files/Folders.h"
#include "files/PathString.h"

#include <QFileInfo>
#include <QTemporaryFile>

namespace brevant {

using namespace Qt::StringLiterals;

namespace {

/// Whether the file system of that folder ignores case. The only sure way to tell is to try.
bool ignoresCapitals(const QString &folder)
{
    QTemporaryFile probe(PathString::join(folder, u".brevant-XXXXXX.tmp"));
    return probe.open() && QFileInfo::exists(PathString::join(
                               folder, PathString::lastComponent(probe.fileName()).toString().toUpper()));
}

} // namespace

void MarkedFiles::add(const QString &path, const QStringList &marks, int row)
{
    for (const QString &mark : marks)
        m_files.insert(mark, {path, row});
}

void MarkedFiles::addInAnyCase(const QString &path, const QStringList &marks, int row)
{
    add(path, marks, row);
    m_rowsInAnyCase.insert(marks.front().toCaseFolded(), row);
}

int MarkedFiles::find(const QStringList &marks, const QStringList &own) const
{
    for (const QString &mark : marks) {
        const auto file = m_files.constFind(mark);
        // Of a file that another run has replaced, a new file may have the mark.
        if (file != m_files.constEnd() && !own.contains(mark) && FileMarks::all(file->path).contains(mark))
            return file->row;
    }
    return -1;
}

int MarkedFiles::findInAnyCase(const QString &path, const QStringList &marks) const
{
    if (const int row = find(marks); row >= 0)
        return row;
    const int row = m_rowsInAnyCase.value(marks.front().toCaseFolded(), -1);
    return row >= 0 && ignoresCapitals(PathString::folder(path).toString()) ? row : -1;
}

OutputClaims::OutputClaims(const std::vector<QString> &sources)
{
    FileMarks::Reader marks;
    for (const QString &source : sources)
        m_sources.add(source, marks.all(source), 0);
}

QString OutputClaims::claim(const QString &source, const std::optional<QString> &output)
{
    if (!output)
        return {};
    const QStringList marks = FileMarks::all(*output);
    if (m_sources.find(marks, FileMarks::all(source)) >= 0)
        return u"its output %1 is the source of another file in the list"_s.arg(*output);
    if (m_outputs.findInAnyCase(*output, marks) >= 0)
        return u"its output %1 is that of another file in the list"_s.arg(*output);
    m_outputs.addInAnyCase(*output, marks, 0);
    return {};
}

} // namespace brevant
