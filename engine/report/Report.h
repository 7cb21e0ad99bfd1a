// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/ResultRow.h"
#include "engine/report/SourceLine.h"

#include <QDateTime>

namespace brevant {

/// A run as it is reported to programs and readers.
struct Report {
    std::vector<ResultRow> rows;
    QString reason; ///< why nothing could be run
    QDateTime started;
    double seconds = 0;
    QString folder{}; ///< paths below it are written from there; empty for none
    EncodingOf encodingOf = [](const QString &) { return TextEncoding::Utf8; };

    /// A path as readers see it.
    [[nodiscard]] QString shownPath(const QString &path) const;
};

/// JUnit XML, one test case for each file. What --check warns of counts as a failure, as it does for the exit
/// status.
[[nodiscard]] QByteArray reportAsJUnit(const Report &report);

/// Workflow commands of GitHub, which make annotations.
[[nodiscard]] QByteArray reportAsGithubCommands(const Report &report);

/// For readers: the totals, and a table in the Markdown of GitHub.
[[nodiscard]] QByteArray reportAsMarkdown(const Report &report);

} // namespace brevant
