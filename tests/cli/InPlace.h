// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/cli/CliRun.h"
#include "tests/cli/MountNamespace.h"
#include "tests/engine/LeftCopy.h"

#include <QDir>
#include <QTest>

/// Runs of brevant-cli over a.css in place, and the safety copies that they leave.
namespace brevant::test {

using namespace Qt::StringLiterals;

inline const QStringList inPlace{u"--set"_s, u"suffixSwitcherKeyString=false"_s};
inline const QByteArray css("a { b : c ; }");

/// Names of what is kept in the folder for safety copies.
inline QStringList copies(const Sandbox &sandbox)
{
    QStringList names =
        QDir(sandbox.home() + u"/state/brevant/originals"_s).entryList(QDir::Files | QDir::Hidden);
    names.removeOne(u"locks"_s);
    return names;
}

/// A start that minifies nothing.
inline Ended start(const Sandbox &sandbox)
{
    sandbox.add(u"other/x.css"_s, css);
    return sandbox.run({u"--list"_s, u"other"_s});
}

/// Runs brevant-cli over a.css in place, with the stub as its Java; it is killed amid that.
inline Ended runOrphaning(const Sandbox &sandbox, const QByteArray &source)
{
    sandbox.add(u"a.css"_s, source);
    return runWithJava(sandbox, QStringLiteral(STUB_JAVA), inPlace + QStringList{u"a.css"_s});
}

/// Waits until the one safety copy that is there is in use by no process any more.
inline bool waitUntilUnused(const Sandbox &sandbox)
{
    return QTest::qWaitFor(
        [&] {
            QString error;
            QStringList refused;
            std::optional<PrivateFolder> folder =
                PrivateFolder::open(sandbox.home() + u"/state/brevant/originals"_s, error);
            return folder && !OriginalSlot::leftIn(*folder, refused).empty();
        },
        30'000);
}

/// Minifies a.css in place under strace, which writes the calls of that name to "trace".
inline Ended runTraced(const Sandbox &sandbox, const QString &call, const QStringList &options)
{
    sandbox.add(u"a.css"_s, css);
    return sandbox.runProgram(u"/usr/bin/strace"_s,
                              QStringList{u"-o"_s, sandbox.path(u"trace"_s), u"-e"_s, u"trace="_s + call} +
                                  options + QStringList{u"--"_s, cliProgram()} + inPlace +
                                  QStringList{u"a.css"_s});
}

} // namespace brevant::test
