// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include <cstdio>

/// How texts look on a terminal.
namespace brevant::TerminalText {

/// `argument` quoted for a shell if it needs to be: in single quotes, or in $'…' of bash, zsh and ksh where
/// it holds characters that are not printable.
[[nodiscard]] QString shellQuoted(const QString &argument);

/// A whole command line for a shell.
[[nodiscard]] QString commandLine(const QString &program, const QStringList &arguments);

/// A number of bytes with its digits in groups: "12,345".
[[nodiscard]] QString grouped(qint64 number);

/// "1 file", "12,345 files".
[[nodiscard]] QString countedFiles(qint64 count);

/// A time as "0:09", "12:05" or "1:02:03".
[[nodiscard]] QString duration(double seconds);

/// `text` cut at its end to at most `columns` columns of a terminal.
[[nodiscard]] QString fitted(const QString &text, int columns);

/// How many columns of a terminal `text` takes.
[[nodiscard]] int width(const QString &text);

/// What the live line of a run shows.
struct Progress {
    int done = 0;
    int total = 1;
    QString status; ///< in words, as in the window
    QString name;   ///< of the file being worked on
    QString left;   ///< the time left; empty if unknown
};

/// The live line in at most `columns` columns. If there is no room for all of it, the status and then the bar
/// are left out, as the count says the same, then the time left; the name is cut last.
[[nodiscard]] QString progressLine(const Progress &progress, int columns);

/// Writes and flushes `text`, so that what child processes print comes after it. False, with errno set, on
/// failure.
bool print(std::FILE *stream, const QString &text);
bool print(std::FILE *stream, const QByteArray &bytes);

/// Prints a line on standard output, behind the time of the day.
void printNow(const QString &text);

/// Prints a sentence about what is wrong on standard error, under the program's name.
void printError(const QString &text);

} // namespace brevant::TerminalText
