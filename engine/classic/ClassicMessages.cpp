// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/classic/ClassicMessages.h"

#include <QRegularExpression>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

using Kind = CompressorMessage::Kind;

/// A place as compressors tell it: the line counts from 1, the column in UTF-16 units.
struct ToldPlace {
    qint64 line = 0;
    qint64 column = 0;
};

/// The column in characters, from 1; a byte-order mark is none.
qint64 inCharacters(QStringView line, qint64 column)
{
    const QStringView before = line.first(std::clamp<qint64>(column - 1, 0, line.size()));
    const auto isNone = [](QChar unit) { return unit.isLowSurrogate() || unit == QChar::ByteOrderMark; };
    return std::max<qint64>(column, 1) - std::ranges::count_if(before, isNone);
}

/// Java prints what its character set lacks as "?", so that only the others can be compared.
QString asciiOnly(QStringView text)
{
    QString ascii;
    for (const char32_t character : text.toUcs4())
        ascii += character < 0x80 ? QChar(static_cast<char16_t>(character)) : u'?';
    return ascii;
}

/// Whether `text` begins with that line, which ends where the line or the script does.
bool beginsWithLine(QStringView text, const QString &line)
{
    static const QRegularExpression end(u"^\\s*?(?:[\n\r]|$|</script|\\]\\]>|/\\*\\]\\]>)"_s,
                                        QRegularExpression::CaseInsensitiveOption);
    constexpr qsizetype enoughForEnd = 256;
    const auto isIndent = [](QChar unit) { return unit == u' ' || unit == u'\t'; };
    text = text.sliced(std::ranges::find_if_not(text, isIndent) - text.begin());
    const QString start = asciiOnly(text.first(std::min(text.size(), 2 * line.size() + enoughForEnd)));
    return start.startsWith(line) && end.match(start.sliced(line.size())).hasMatch();
}

/// Where that line of an inline script is in the page; nothing if it may be in two places.
std::optional<ToldPlace> placeInPage(const QString &page, const ToldPlace &inScript, const QString &line)
{
    // The compressor takes a CDATA section out of its script before it counts.
    static const QRegularExpression start(u"<script[^>]*>(?:\\s*<!\\[CDATA\\[)?"_s,
                                          QRegularExpression::CaseInsensitiveOption);
    std::optional<ToldPlace> found;
    for (const QRegularExpressionMatch &match : start.globalMatch(page)) {
        const QStringView before = QStringView(page).first(match.capturedEnd());
        const QStringView script = QStringView(page).sliced(match.capturedEnd());
        if (!beginsWithLine(lineOf(script, inScript.line), line))
            continue;
        if (found)
            return std::nullopt;
        const qint64 linesBefore = lineCount(before);
        const qint64 indent = before.end() - lineOf(before, linesBefore).begin();
        found = {linesBefore + inScript.line - 1, inScript.column + (inScript.line == 1 ? indent : 0)};
    }
    return found;
}

/// `isScript`: of a page, whose lines count from the script, and which says what the line is.
CompressorMessage messageOf(const QRegularExpressionMatch &match, bool isScript, const QString &source)
{
    CompressorMessage message;
    message.kind = match.capturedView(u"kind") == u"ERROR" ? Kind::Error : Kind::Warning;
    message.text = match.captured(u"text"_s);
    std::optional<ToldPlace> place =
        ToldPlace{match.capturedView(u"line").toLongLong(), match.capturedView(u"column").toLongLong()};
    const QString line = isScript ? match.captured(u"source"_s).trimmed() : QString();
    if (isScript)
        place = line.isEmpty() ? std::nullopt : placeInPage(source, *place, asciiOnly(line));
    if (place && place->line > 0) {
        message.line = place->line;
        message.column = inCharacters(lineOf(source, place->line), place->column);
    } else if (isScript) {
        message.text += line.isEmpty() ? u" in a script"_s : u" in a script, at \"%1\""_s.arg(line);
    }
    return message;
}

void addTo(CompressorMessages &messages, CompressorMessage message)
{
    if (messages.shown.size() < mostShownMessages)
        messages.shown.push_back(std::move(message));
    else
        ++messages.more;
}

/// Adds all that `expression` finds, but for the sum at the end.
void addAll(CompressorMessages &messages, const QRegularExpression &expression, bool isScript,
            const QString &said, const QString &source)
{
    static const QRegularExpression sum(u"^Compilation produced \\d+ syntax errors\\.$"_s);
    for (const QRegularExpressionMatch &match : expression.globalMatch(said)) {
        if (!sum.match(match.captured(u"text"_s)).hasMatch())
            addTo(messages, messageOf(match, isScript, source));
    }
}

/// What Java says itself, in the words of somebody who need not know Java; empty for nothing.
QString javaMessage(const QString &said)
{
    if (said.contains("java.lang.OutOfMemoryError"_L1))
        return u"Java ran out of memory"_s;
    if (said.contains("java.lang.StackOverflowError"_L1))
        return u"something in it is too long, not closed or nested too deeply for the compressor"_s;
    if (said.contains("IndexOutOfBoundsException"_L1) && said.contains("printSymbolTree"_L1))
        return u"there is no statement in it, which the compressor cannot minify"_s;
    if (said.contains("Usage: java -jar"_L1))
        return u"the compressor does not understand its options; line breaks need a whole number"_s;
    static const QRegularExpression start(u"^Error occurred during initialization of VM\\n(.+)$"_s,
                                          QRegularExpression::MultilineOption);
    if (const QRegularExpressionMatch match = start.match(said); match.hasMatch())
        return u"Java could not start: %1"_s.arg(match.captured(1));
    static const QRegularExpression failure(
        u"^(?:ERROR: |(?:Caused by: |Exception in thread \"[^\"]*\" )?[\\w.$]+(?:Exception|Error): )(.+)$"_s,
        QRegularExpression::MultilineOption);
    const QRegularExpressionMatch match = failure.match(said);
    return match.captured(1);
}

} // namespace

Explanation readClassicMessages(const QByteArray &said, const QString &source)
{
    // A name may have line feeds.
    static const QRegularExpression fromYui(
        u"^\\[(?<kind>ERROR|WARNING)\\](?! HtmlCompressor:).*\\n(?:(?![ \\[]).*\\n)*"
        "  (?:(?<line>\\d+):(?<column>\\d+):)?(?<text>.+)$"_s,
        QRegularExpression::MultilineOption);
    static const QRegularExpression fromScript(
        u"^\\[(?<kind>ERROR|WARNING)\\] HtmlCompressor: \"(?<text>.*)\""
        "(?: at line \\[(?<line>\\d+):(?<column>\\d+)\\])? during JavaScript compression(?:: (?<source>.*))?$"_s,
        QRegularExpression::MultilineOption);
    const QString text = QString::fromUtf8(said);
    Explanation explanation;
    addAll(explanation.messages, fromYui, false, text, source);
    addAll(explanation.messages, fromScript, true, text, source);
    const auto isError = [](const CompressorMessage &message) { return message.kind == Kind::Error; };
    explanation.isAboutSyntax = std::ranges::any_of(explanation.messages.shown, isError);
    if (const QString failure = javaMessage(text); !explanation.isAboutSyntax && !failure.isEmpty())
        addTo(explanation.messages, {Kind::Error, failure, 0, 0});
    return explanation;
}

} // namespace brevant
