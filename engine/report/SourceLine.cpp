// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/report/SourceLine.h"

#include "engine/modern/FilterMessages.h"
#include "files/FileBytes.h"
#include "files/RawBytes.h"
#include "settings/EntrySettings.h"
#include "settings/SettingsKeys.h"

#include <QFile>

#include <algorithm>

namespace brevant {

using namespace Qt::StringLiterals;

/// What is not valid in the character set is shown as UTF-8.
static QString charactersOf(const QByteArray &bytes, TextEncoding encoding)
{
    QString text;
    const auto fault = TextCodec(encoding).decode(bytes, [&text](QStringView piece) { text += piece; });
    return fault ? QString::fromUtf8(bytes) : text;
}

/// On one line, with each tab as wide as a blank.
static QString shown(QStringView part)
{
    return printable(part.toString().replace(u'\t', u' '));
}

std::optional<SourceLine> sourceLineAt(const QString &path, qint64 line, qint64 column, TextEncoding encoding)
{
    constexpr qsizetype mostBefore = 60; // characters, so that both fit into a line of 100
    constexpr qsizetype mostAfter = 36;
    const auto bytes = line > 0 ? FileBytes::readAll(QFile::encodeName(path)) : std::nullopt;
    if (!bytes)
        return std::nullopt;
    const QString text = charactersOf(*bytes, encoding);
    QStringView rest = lineOf(text, line);
    const auto *const end = std::ranges::find_if(
        rest, [](QChar sign) { return QStringView(u"\n\r\u2028\u2029").contains(sign); });
    rest = rest.first(end - rest.begin());
    if (rest.trimmed().isEmpty())
        return std::nullopt;
    const qsizetype place = std::clamp<qsizetype>(column - 1, 0, rest.size());
    const qsizetype from = std::max<qsizetype>(0, place - mostBefore);
    const qsizetype to = std::min(rest.size(), place + mostAfter);
    return SourceLine{(from > 0 ? u"…"_s : QString()) + shown(rest.sliced(from, place - from)),
                      shown(rest.sliced(place, to - place)) + (to < rest.size() ? u"…"_s : QString())};
}

EncodingOf encodingsBy(const EntrySettings &settings)
{
    return [settings](const QString &source) {
        return textEncodingNamed(settings.of(source).stringForKey(selectedEncodingKeyString));
    };
}

} // namespace brevant
