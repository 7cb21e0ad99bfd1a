// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/cli/CliRun.h"

#include <memory>

namespace brevant::test {

using namespace Qt::StringLiterals;

/// A folder with sources, and runs in it.
class ProjectFixture {
protected:
    inline static const QByteArray css = "a { color : red }\n";
    inline static const QString projectFile = u"brevant.json"_s;

    /// To be called before each test.
    void setUp()
    {
        m_sandbox = std::make_unique<Sandbox>();
        for (const QString &name : {u"src/a.css"_s, u"src/deep/b.css"_s, u"vendor/c.css"_s})
            m_sandbox->add(name, css);
    }

    void write(const QByteArray &text) const { m_sandbox->add(projectFile, text); }

    /// Runs it in a folder of the sandbox.
    [[nodiscard]] Ended runIn(const QString &folder, const QStringList &arguments) const
    {
        return m_sandbox->runShell(u"cd \"./$1\" && shift && exec \"$CLI\" \"$@\""_s,
                                   QStringList(folder) + arguments);
    }

    /// The two columns of --list, relative to the sandbox.
    [[nodiscard]] QStringList column(int number, const QStringList &arguments, const QString &folder) const
    {
        QStringList paths;
        const QString lines = QString::fromUtf8(runIn(folder, QStringList(u"--list"_s) + arguments).out);
        for (const QString &line : lines.split(u'\n', Qt::SkipEmptyParts))
            paths.append(line.section(u'\t', number, number).sliced(m_sandbox->path().size() + 1));
        return paths;
    }

    [[nodiscard]] QStringList listed(const QStringList &arguments, const QString &folder = {}) const
    {
        return column(0, arguments, folder);
    }

    [[nodiscard]] QString outputOf(const QStringList &arguments, const QString &folder = {}) const
    {
        return column(1, arguments, folder).join(u", ");
    }

    std::unique_ptr<Sandbox> m_sandbox;
};

} // namespace brevant::test
