// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "settings/PrintableText.h"

#include <QString>
#include <QStringList>

#include <cstdio>

/// How texts look on a terminal.
namespace brevant::TerminalText {

using brevant::printable;

/// `argument` as a shell reads it back: as it is where that is safe, else in single quotes; what is not
/// printable in $'…', which bash, zsh and ksh know.
[[nodiscard]] QString shellQuoted(const QString &argument);

/// A whole command line for a shell.
[[nodiscard]] QString commandLine(const QString &program, const QStringList &arguments);

/// A number of bytes with its digits in groups: "12,345".
[[nodiscard]] QString grouped(qint64 number);

/// "2.5" percent saved from `before` to `after` bytes, negative if it grew; "0" if there was nothing.
[[nodiscard]] QString percentSaved(qint64 before, qint64 after);

/// A time as "0:09", "12:05" or "1:02:03".
[[nodiscard]] QString duration(double seconds);

/// `text` cut at its end to at most `columns` columns of a terminal.
[[nodiscard]] QString fitted(const QString &text, int columns);

/// Writes `text` at once, so that what child processes print comes after it; false, with errno set, if that
/// fails.
bool print(std::FILE *stream, const QString &text);

} // namespace brevant::TerminalText
