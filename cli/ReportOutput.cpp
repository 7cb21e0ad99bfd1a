// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/ReportOutput.h"

#include "cli/CommandLine.h"
#include "engine/report/Report.h"
#include "files/DurableFile.h"

#include <algorithm>
#include <array>
#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

struct Format {
    QLatin1StringView name;
    QByteArray (*write)(const Report &);
};

constexpr std::array formats{
    Format{"json"_L1, [](const Report &report) { return reportAsJson(report.rows, report.reason); }},
    Format{"junit"_L1, reportAsJUnit},
    Format{"github"_L1, reportAsGithubCommands},
    Format{"markdown"_L1, reportAsMarkdown},
};

/// Also to a pipe, which has no positions. False, with errno set, on failure.
bool writeAll(int file, QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const ssize_t written = ::write(file, bytes.data(), static_cast<std::size_t>(bytes.size()));
        if (written < 0 && errno != EINTR)
            return false;
        bytes = bytes.sliced(std::max<ssize_t>(written, 0));
    }
    return true;
}

} // namespace

QStringList reportFormats()
{
    QStringList names;
    for (const Format &format : formats)
        names.append(format.name);
    return names;
}

bool isReportPrinted(const CommandLine &line)
{
    return line.reportFile == u"-";
}

ReportOutput::ReportOutput(const CommandLine &line) : m_line(line)
{
    if (!isReportPrinted(line))
        return;
    m_standardOutput = ::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    ::dup2(STDERR_FILENO, STDOUT_FILENO);
}

ReportOutput::~ReportOutput()
{
    if (m_standardOutput >= 0)
        ::close(m_standardOutput);
}

bool ReportOutput::isWanted() const
{
    return !m_line.reportFile.isEmpty();
}

QString ReportOutput::write(const Report &report) const
{
    const auto *const format = std::ranges::find(formats, m_line.reportFormat, &Format::name);
    const QByteArray bytes = format->write(report);
    if (!isReportPrinted(m_line))
        return DurableFile::replace(m_line.reportFile, bytes);
    return writeAll(m_standardOutput, bytes) ? QString() : qt_error_string(errno);
}

} // namespace brevant
