// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/Tools.h"
#include "tests/Files.h"
#include "tests/cli/CliRun.h"

#include <QDir>
#include <QFileInfo>

/// Trees that are made in a sandbox, and what brevant-cli makes of them elsewhere.
namespace brevant::test {

using namespace Qt::StringLiterals;

inline const QByteArray css("a { b : c ; }");
inline const QByteArray minified("a{b:c}"); // by either family

/// Whether the modern compressors are there, which are much faster.
inline bool hasModern()
{
    Tools tools;
    tools.programs = QFileInfo(cliProgram()).dir().filePath(u"libexec"_s);
    return tools.missingModern().isEmpty();
}

/// Runs brevant-cli with the faster family.
inline Ended run(const Sandbox &sandbox, const QStringList &arguments)
{
    static const QStringList family = hasModern() ? QStringList{u"--compressors=modern"_s} : QStringList();
    return sandbox.run(family + arguments);
}

/// Makes files, "folder/", "link->target" and "hard link=file". Sources hold `css`, others their names.
inline void fill(const Sandbox &sandbox, const QStringList &names)
{
    for (const QString &name : names) {
        const QStringList link = name.split(u"->"_s);
        const QStringList hard = name.split(u'=');
        const bool isMade =
            link.size() > 1   ? makeLink(link[1], sandbox.path(link[0]))
            : hard.size() > 1 ? QDir().mkpath(QFileInfo(sandbox.path(hard[0])).path()) &&
                                    makeHardLink(sandbox.path(hard[1]), sandbox.path(hard[0]))
            : name.endsWith(u'/')
                ? QDir().mkpath(sandbox.path(name))
                : !sandbox.add(name, name.endsWith(u".css", Qt::CaseInsensitive) ? css : name.toUtf8())
                       .isEmpty();
        if (!isMade)
            std::abort();
    }
}

/// The names of the files below a folder.
inline QStringList files(const Sandbox &sandbox, const QString &folder)
{
    QStringList names = tree(sandbox.path(folder)).keys();
    names.removeIf([](const QString &name) { return name.endsWith(u'/'); });
    return names;
}

constexpr time_t earlier = 1'234'567'890;

/// Gives a file the time `earlier`.
inline bool setModified(const Sandbox &sandbox, const QString &name)
{
    const timespec times[]{{0, UTIME_OMIT}, {earlier, 0}};
    return ::utimensat(AT_FDCWD, QFile::encodeName(sandbox.path(name)).constData(), times, 0) == 0;
}

inline time_t modified(const Sandbox &sandbox, const QString &name)
{
    return statusOf(sandbox.path(name)).st_mtim.tv_sec;
}

} // namespace brevant::test
