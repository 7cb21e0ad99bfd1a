// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/Files.h"
#include "tests/cli/CliRun.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace brevant::test {

inline const QByteArray css("a { b : c ; }");

/// A folder "w" with a file of each family of kinds.
class ChangedSite final {
public:
    ChangedSite()
    {
        sandbox.add(u"w/a.css"_s, css);
        sandbox.add(u"w/b.js"_s, "var second = 1 ;");
        sandbox.add(u"w/c.html"_s, "<p> a </p>");
    }

    [[nodiscard]] Ended run(const QStringList &arguments = {}) const
    {
        return sandbox.run(options + arguments + QStringList{u"w"_s});
    }

    /// What a run has worked on, by its report; "failed" for a run that has failed.
    [[nodiscard]] QStringList done(const QStringList &arguments = {}) const
    {
        const QString report = sandbox.home() + "/report.json"_L1;
        const Ended ended = run(QStringList{u"--sort"_s, u"--report"_s, report} + arguments);
        if (ended.status != 0)
            return {u"failed"_s, QString::fromUtf8(ended.err)};
        QStringList names;
        for (const QJsonValue &file : QJsonDocument::fromJson(readFile(report)).object()[u"files"].toArray())
            names.append(file[u"source"].toString().sliced(sandbox.path(u"w"_s).size() + 1));
        return names;
    }

    Sandbox sandbox;
    QStringList options{u"--changed"_s, u"--compressors"_s, u"modern"_s};
};

inline const QStringList all{u"a.css"_s, u"b.js"_s, u"c.html"_s};

} // namespace brevant::test
