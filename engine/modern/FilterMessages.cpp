// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/modern/FilterMessages.h"

#include <QRegularExpression>
#include <QStringList>

#include <algorithm>

namespace brevant {

namespace {

using Kind = CompressorMessage::Kind;
using namespace Qt::StringLiterals;

/// What ends a line, by ECMA-262.
const QRegularExpression &lineEnd()
{
    static const QRegularExpression expression(u"\r\n|[\n\r\u2028\u2029]"_s);
    return expression;
}

/// The column in characters, from 1, of one in bytes, from 0.
qint64 columnOf(QStringView line, qint64 byte)
{
    qint64 column = 1;
    for (qsizetype i = 0; i < line.size() && byte > 0; ++i, ++column) {
        const bool isPair = line.at(i).isHighSurrogate() && i + 1 < line.size();
        const char16_t unit = line.at(i).unicode();
        byte -= isPair ? 4 : unit < 0x80 ? 1 : unit < 0x800 ? 2 : 3;
        i += isPair ? 1 : 0;
    }
    return column;
}

/// How many messages there were in all, as the last line tells if some are not shown.
int countIn(const QString &text, std::size_t shown)
{
    static const QRegularExpression left(u"(\\d+) of (\\d+) (?:error|warning)"_s);
    const qsizetype lastLine = text.trimmed().lastIndexOf(u'\n') + 1;
    int unsaid = 0;
    for (const QRegularExpressionMatch &match : left.globalMatch(QStringView(text).sliced(lastLine)))
        unsaid += match.captured(2).toInt() - match.captured(1).toInt();
    return static_cast<int>(shown) + std::max(unsaid, 0);
}

} // namespace

QStringView lineOf(QStringView text, qint64 number)
{
    qsizetype start = 0;
    QRegularExpressionMatchIterator ends = lineEnd().globalMatch(text);
    for (; number > 1 && ends.hasNext(); --number)
        start = ends.next().capturedEnd();
    return number > 1 ? QStringView() : text.sliced(start);
}

qint64 lineCount(QStringView text)
{
    qint64 count = 1;
    for (auto ends = lineEnd().globalMatch(text); ends.hasNext(); ends.next())
        ++count;
    return count;
}

QString CompressorMessage::inWords() const
{
    if (line == 0)
        return text;
    return column == 0 ? u"line %1: "_s.arg(line) + text
                       : u"line %1, column %2: "_s.arg(line).arg(column) + text;
}

QString CompressorMessages::inWords() const
{
    const auto isError = [](const CompressorMessage &message) { return message.kind == Kind::Error; };
    auto first = std::ranges::find_if(shown, isError);
    if (first == shown.end())
        first = shown.begin();
    if (first == shown.end())
        return {};
    const int others = static_cast<int>(shown.size()) - 1 + more;
    return others == 0 ? first->inWords() : u"%1 (and %2 more)"_s.arg(first->inWords()).arg(others);
}

CompressorMessages esbuildMessages(const QByteArray &messages, const QByteArray &source)
{
    static const QRegularExpression message(
        u"^(✘ \\[ERROR\\]|▲ \\[WARNING\\]) (.+)$(?:\n\n    <stdin>:(\\d+):(\\d+):$)?"_s,
        QRegularExpression::MultilineOption);
    const QString text = QString::fromUtf8(messages);
    const QString lines = messages.isEmpty() ? QString() : QString::fromUtf8(source);
    CompressorMessages result;
    std::size_t count = 0;
    for (const QRegularExpressionMatch &match : message.globalMatch(text)) {
        if (++count > mostShownMessages)
            continue;
        CompressorMessage &shown = result.shown.emplace_back();
        shown.kind = match.capturedView(1).startsWith(u'✘') ? Kind::Error : Kind::Warning;
        shown.text = match.captured(2);
        shown.line = match.capturedView(3).toLongLong();
        if (shown.line > 0)
            shown.column = columnOf(lineOf(lines, shown.line), match.capturedView(4).toLongLong());
    }
    result.more = countIn(text, count) - static_cast<int>(result.shown.size());
    return result;
}

CompressorMessages markupMessages(const QByteArray &messages)
{
    static const QRegularExpression place(u"^(\\d+):(\\d+): (.*)$"_s);
    CompressorMessages result;
    const QString text = QString::fromUtf8(messages).trimmed();
    if (text.isEmpty())
        return result;
    CompressorMessage message{Kind::Error, text.section(u'\n', 0, 0), 0, 0};
    if (const QRegularExpressionMatch match = place.match(message.text); match.hasMatch()) {
        message.line = match.capturedView(1).toLongLong();
        message.column = match.capturedView(2).toLongLong();
        message.text = match.captured(3);
    }
    result.shown.push_back(message);
    return result;
}

} // namespace brevant
