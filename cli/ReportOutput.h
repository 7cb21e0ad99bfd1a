// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

namespace brevant {

struct CommandLine;
struct Report;

/// The formats of --report-format.
[[nodiscard]] QStringList reportFormats();

/// Whether the report goes to standard output.
[[nodiscard]] bool isReportPrinted(const CommandLine &line);

/// Where the report of a run goes to, if one is wanted.
class ReportOutput final {
public:
    /// Keeps standard output for the report alone if it is to be printed: whatever else is, by compressors
    /// too, goes to standard error from here on.
    explicit ReportOutput(const CommandLine &line);
    ReportOutput(const ReportOutput &) = delete;
    ReportOutput &operator=(const ReportOutput &) = delete;
    ~ReportOutput();

    [[nodiscard]] bool isWanted() const;

    /// Returns why it cannot be written, in words; empty if it can.
    [[nodiscard]] QString write(const Report &report) const;

private:
    const CommandLine &m_line;
    int m_standardOutput = -1;
};

} // namespace brevant
