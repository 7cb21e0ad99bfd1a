// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Colours.h"

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace brevant {

Colours Colours::of(int descriptor)
{
    Colours colours;
    const QString force = qEnvironmentVariable("CLICOLOR_FORCE", u"0"_s);
    const bool isTerminal = ::isatty(descriptor) != 0 && qEnvironmentVariable("TERM", u"dumb"_s) != u"dumb";
    colours.m_areWanted =
        qEnvironmentVariableIsEmpty("NO_COLOR") && (isTerminal || (force != u"0" && !force.isEmpty()));
    return colours;
}

/// ECMA-48: SGR, select graphic rendition.
QString Colours::painted(int colour, const QString &text) const
{
    return m_areWanted ? u"\x1b[%1m%2\x1b[m"_s.arg(QString::number(colour), text) : text;
}

} // namespace brevant
