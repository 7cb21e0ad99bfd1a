// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/OutputClaims.h"

#include "engine/CompressorCommand.h"
#include "files/Folders.h"
#include "files/PathString.h"
#include "files/RawBytes.h"
#include "settings/SettingsKeys.h"

#include <QFileInfo>
#include <QTemporaryFile>

#include <algorithm>

namespace brevant {

namespace {

/// Whether the file system of that folder ignores case. The only sure way to tell is to try.
bool ignoresCapitals(const QString &folder)
{
    QTemporaryFile probe(PathString::join(folder, u".brevant-XXXXXX.tmp"));
    return probe.open() && QFileInfo::exists(PathString::join(
                               folder, PathString::lastComponent(probe.fileName()).toString().toUpper()));
}

} // namespace

OutputClaims::OutputClaims(const std::vector<QString> &sources)
{
    for (const QString &source : sources) {
        for (const QString &mark : FileMarks::all(source))
            m_sources.insert(mark);
    }
}

QString OutputClaims::claim(const QString &source, const std::optional<QString> &output)
{
    if (!output)
        return {};
    const QStringList marks = FileMarks::all(*output);
    const QStringList own = FileMarks::all(source);
    const bool isSource = std::ranges::any_of(
        marks, [&](const QString &mark) { return m_sources.contains(mark) && !own.contains(mark); });
    if (isSource)
        return QStringLiteral("its output %1 is the source of another file in the list").arg(*output);
    if (isTaken(*output, marks))
        return QStringLiteral("its output %1 is that of another file in the list").arg(*output);
    for (const QString &mark : marks)
        m_outputs.insert(mark);
    m_outputsInAnyCase.insert(marks.front().toCaseFolded());
    return {};
}

bool OutputClaims::isTaken(const QString &output, const QStringList &marks) const
{
    return std::ranges::any_of(marks, [this](const QString &mark) { return m_outputs.contains(mark); }) ||
           (m_outputsInAnyCase.contains(marks.front().toCaseFolded()) &&
            ignoresCapitals(PathString::folder(output).toString()));
}

QString notUtf8()
{
    return QStringLiteral("its path is not valid UTF-8 and cannot be handed to a compressor");
}

Refusal refusalFor(const std::vector<QString> &sources, const SettingsStore &settings)
{
    return [&settings, command = CompressorCommand(settings), claims = OutputClaims(sources)](
               const QString &source, const std::optional<QString> &output) mutable {
        if (RawBytes::areIn(source))
            return notUtf8();
        if (!output)
            return QStringLiteral("%1 is neither true nor false").arg(suffixSwitcherKeyString);
        if (command.arguments(source, output).isEmpty())
            return QStringLiteral("a switch of its compressor is neither true nor false");
        if (isTakenForPattern(source, *output))
            return QStringLiteral("YUI Compressor takes an output path with a colon for a pattern");
        return claims.claim(source, output);
    };
}

} // namespace brevant
