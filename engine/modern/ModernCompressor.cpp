// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/modern/ModernCompressor.h"

#include "engine/Tools.h"
#include "engine/modern/FilterRunner.h"
#include "engine/modern/SourceMap.h"
#include "queue/FileKind.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QXmlStreamReader>

#include <algorithm>
#include <utility>

namespace brevant {

namespace {

using namespace Qt::StringLiterals;

/// The text of a source, as filters take it.
struct SourceText {
    QByteArray mark; ///< the byte-order mark, in the character set of the source
    QByteArray utf8;
    QString error;
};

QByteArrayView byteOrderMarkOf(TextEncoding encoding)
{
    switch (encoding) {
    case TextEncoding::Utf8:
        return "\xEF\xBB\xBF";
    case TextEncoding::Gb18030:
        return "\x84\x31\x95\x33";
    default: // cannot hold one
        return {};
    }
}

QString faultText(TextEncoding encoding, qint64 position)
{
    return u"the source is not valid %1 at byte %2"_s.arg(nameOf(encoding)).arg(position);
}

SourceText textOf(const QByteArray &source, TextEncoding encoding)
{
    SourceText text;
    if (const QByteArrayView mark = byteOrderMarkOf(encoding); !mark.isEmpty() && source.startsWith(mark))
        text.mark = mark.toByteArray();
    if (encoding == TextEncoding::Utf8) {
        text.utf8 = text.mark.isEmpty() ? source : source.sliced(text.mark.size());
        if (QByteArrayView(source).isValidUtf8()) // much faster than converting it twice
            return text;
    }
    QString characters;
    const auto fault =
        TextCodec(encoding).decode(source, [&characters](QStringView piece) { characters += piece; });
    if (fault)
        text.error = faultText(encoding, fault->position);
    text.utf8 = characters.toUtf8();
    return text;
}

/// False if the character set lacks a character.
bool encode(const QByteArray &utf8, TextEncoding encoding, QByteArray &bytes)
{
    if (encoding == TextEncoding::Utf8) {
        bytes += utf8;
        return true;
    }
    return TextCodec(encoding).encode(QString::fromUtf8(utf8), true, bytes);
}

bool isMarkup(const FileKind &kind)
{
    return kind.family == KindFamily::Markup;
}

/// Why a text of that kind is no XML, which minify does not tell; empty if it is, or need not be.
QString xmlError(const FileKind &kind, const QByteArray &utf8)
{
    if (!kind.mediaType.endsWith("+xml"_L1))
        return {};
    QXmlStreamReader reader(QString::fromUtf8(utf8)); // whatever character set it declares
    while (!reader.atEnd())
        reader.readNext();
    if (!reader.hasError())
        return {};
    QString text = reader.errorString();
    if (text.endsWith(u'.'))
        text.chop(1);
    return CompressorMessage{CompressorMessage::Kind::Error, text, reader.lineNumber(), reader.columnNumber()}
        .inWords();
}

/// Reads a switch by the strict test; what is neither true nor false becomes an error.
bool readSwitch(const SettingsStore &settings, QLatin1StringView key, QString &error)
{
    const QJsonValue value = settings.objectForKey(key);
    if (!value.isBool() && error.isEmpty())
        error = u"the setting %1 is neither true nor false"_s.arg(key);
    return value.toBool();
}

QString lineLimit(const std::optional<QString> &column, QString &error)
{
    bool isNumber = false;
    const int number = column.value_or(QString()).toInt(&isNumber);
    if ((!isNumber || number < 0) && error.isEmpty())
        error = u"the setting %1 is \"%2\", which is no number of columns"_s.arg(lineBreakKeyString,
                                                                                 column.value_or(QString()));
    return QString::number(number);
}

/// Whether esbuild, if it shortened the syntax of a style sheet, would move a declaration past another that
/// it must not overtake: one of a side past one of the flow or `all`, or one of "& {…}" past those after it.
bool hasFixedOrder(const QByteArray &styleSheet)
{
    static const QRegularExpression order(
        u"(margin|padding)-(block|inline)[^{}]*[;\\s]\\1(-(top|right|bottom|left))?\\s*:"
        "|inset-(block|inline)[^{}]*[;\\s](inset|top|right|bottom|left)\\s*:"
        "|border-(start|end)-(start|end)-radius[^{}]*[;\\s]border(-(top|bottom)-(left|right))?-radius\\s*:"
        "|[{;\\s]all\\s*:[^{}]*[;\\s](margin|padding|inset|top|right|bottom|left|border)"
        "|[{};]\\s*&\\s*\\{"_s,
        QRegularExpression::CaseInsensitiveOption);
    return order.match(QString::fromUtf8(styleSheet)).hasMatch();
}

bool isAsciiOnly(const QByteArray &text)
{
    return std::ranges::all_of(text, [](char byte) { return (byte & 0x80) == 0; });
}

/// The options for that source: what is not in it is not brought in, and what must stay in its place does.
ModernOptions fitted(const FileKind &kind, ModernOptions options, const QByteArray &text)
{
    options.isAscii = isAsciiOnly(text);
    options.keepSyntax |= kind.family == KindFamily::StyleSheet && hasFixedOrder(text);
    return options;
}

Filter markupFilter(const FileKind &kind, const ModernOptions &options, const Tools &tools)
{
    Filter filter{tools.markup(), {kind.mediaType}};
    if (options.keepSpaces)
        filter.arguments.append(u"--keep-whitespace"_s);
    if (options.keepComments)
        filter.arguments.append(u"--keep-comments"_s);
    if (options.keepNames)
        filter.arguments.append(u"--keep-names"_s);
    return filter;
}

Filter esbuildFilter(const FileKind &kind, const ModernOptions &options, const Tools &tools)
{
    const bool isScript = kind.family == KindFamily::Script;
    Filter filter{options.esbuild.isEmpty() ? tools.esbuild() : options.esbuild,
                  {u"--minify-whitespace"_s, isScript ? u"--loader=js"_s : u"--loader=css"_s,
                   options.isAscii ? u"--charset=ascii"_s : u"--charset=utf8"_s, u"--log-level=warning"_s,
                   u"--color=false"_s,
                   // Such a style sheet would be repaired by guessing.
                   u"--log-override:css-syntax-error=error"_s}};
    if (!options.keepNames)
        filter.arguments.append(u"--minify-identifiers"_s);
    if (!options.keepSyntax)
        filter.arguments.append(u"--minify-syntax"_s);
    if (!options.lineLimit.isEmpty())
        filter.arguments.append(u"--line-limit="_s + options.lineLimit);
    if (options.makeSourceMap)
        filter.arguments.append(u"--sourcemap=inline"_s); // the only form on standard output
    filter.canBeKept = options.esbuild.isEmpty();         // who knows which version another is
    return filter;
}

ModernResult failure(const QString &error)
{
    ModernResult result;
    result.error = error;
    return result;
}

/// What a filter made of a text, in UTF-8, without the line feed that esbuild adds.
ModernResult runOnce(const FileKind &kind, const Filter &filter, const QByteArray &text,
                     FilterRunner &filters)
{
    if (!QFileInfo(filter.program).isExecutable())
        return failure(u"the modern compressor %1 is missing"_s.arg(filter.program));
    FilterRun run = filters.run(filter, text, timeFor(text.size()));
    ModernResult result;
    result.messages = isMarkup(kind) ? markupMessages(run.messages) : esbuildMessages(run.messages, text);
    if (!run.isSuccess()) {
        const QString said = run.end == FilterRun::End::Exited ? result.messages.inWords() : QString();
        result.error = said.isEmpty() ? run.words(filter) : said;
    } else if (const QString error = xmlError(kind, text); !error.isEmpty()) {
        result.error = error;
    } else if (!xmlError(kind, run.output).isEmpty()) {
        result.error = u"the result is not valid, which would break the drawing"_s;
    }
    result.output = std::move(run.output);
    if (!isMarkup(kind) && result.output.endsWith('\n'))
        result.output.chop(1);
    return result;
}

} // namespace

ModernOptions ModernOptions::forKind(const FileKind &kind, const SettingsStore &settings,
                                     const std::optional<QString> &lineBreakColumn,
                                     const std::optional<QString> &encoding)
{
    ModernOptions options;
    options.encoding = textEncodingNamed(encoding);
    if (isMarkup(kind)) {
        options.keepSpaces = settings.boolForKey(keepXMLSpaceCheckerKeyString);
        options.keepComments = settings.isTrue(keepCommentsCheckerKeyString);
        options.keepNames = settings.isTrue(nomungeSwitcherKeyString);
        return options;
    }
    if (readSwitch(settings, lineBreakSwitcherKeyString, options.error))
        options.lineLimit = brevant::lineLimit(lineBreakColumn, options.error);
    if (kind.family == KindFamily::Script) {
        options.keepNames = readSwitch(settings, nomungeSwitcherKeyString, options.error);
        options.keepSyntax = readSwitch(settings, disableOptimizationsSwitcherKeyString, options.error);
    }
    options.makeSourceMap = settings.isTrue(sourceMapCheckerKeyString);
    options.esbuild = settings.stringForKey(esbuildPathKeyString).value_or(QString());
    if (!options.esbuild.isEmpty() && !options.esbuild.startsWith(u'/') && options.error.isEmpty())
        options.error = u"the setting %1 is no absolute path"_s.arg(esbuildPathKeyString);
    return options;
}

Filter modernFilter(const FileKind &kind, const ModernOptions &options, const Tools &tools)
{
    return isMarkup(kind) ? markupFilter(kind, options, tools) : esbuildFilter(kind, options, tools);
}

Filter modernFilterFor(const FileKind &kind, const QByteArray &source, const ModernOptions &options,
                       const Tools &tools)
{
    return modernFilter(kind, fitted(kind, options, textOf(source, options.encoding).utf8), tools);
}

ModernResult minifyModern(const FileKind &kind, const QByteArray &source, const ModernOptions &options,
                          const Tools &tools, const QString &sourcePath, const QString &outputPath,
                          FilterRunner &filters)
{
    if (!options.error.isEmpty())
        return failure(options.error);
    const SourceText text = textOf(source, options.encoding);
    if (!text.error.isEmpty())
        return failure(text.error);
    for (ModernOptions fitting = fitted(kind, options, text.utf8);; fitting.isAscii = true) {
        ModernResult result = runOnce(kind, modernFilter(kind, fitting, tools), text.utf8, filters);
        if (!result.error.isEmpty())
            return result;
        // Who knows what program that is; ours makes nothing of comments alone.
        if (result.output.isEmpty() && !options.esbuild.isEmpty() && !text.utf8.trimmed().isEmpty())
            return failure(u"%1 made an empty text of it"_s.arg(options.esbuild));
        if (options.makeSourceMap)
            result.sourceMap = takeSourceMap(result.output, sourcePath, outputPath);
        QByteArray encoded = text.mark;
        if (!encode(result.output, options.encoding, encoded)) {
            if (!fitting.isAscii && !isMarkup(kind))
                continue;
            result.error = u"the result has a character that is not in %1"_s.arg(nameOf(options.encoding));
            return result;
        }
        result.isSource = encoded.size() >= source.size();
        if (result.isSource)
            result.sourceMap.clear();
        else if (!result.sourceMap.isEmpty())
            static_cast<void>(encode(sourceMapLink(kind, outputPath), options.encoding, encoded));
        result.output = result.isSource ? source : encoded;
        return result;
    }
}

} // namespace brevant
