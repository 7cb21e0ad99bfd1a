// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/classic/Explanation.h"

#include "engine/CompressorCommand.h"
#include "engine/Tools.h"
#include "engine/modern/FilterRunner.h"
#include "files/FileBytes.h"
#include "files/PathString.h"
#include "queue/FileKind.h"

#include <QFile>
#include <QTemporaryDir>

namespace brevant {

namespace {

using namespace Qt::StringLiterals;
using Kind = CompressorMessage::Kind;

/// Where the arguments of a classic compressor name its output, two places behind the entry; -1 if they do
/// not. It is the "-o" that follows an entry: other values are the user's too, and may be anything.
qsizetype placeOfOutput(const QStringList &arguments)
{
    for (qsizetype i = 2; i + 1 < arguments.size(); ++i) {
        if (arguments.at(i) == u"-o" && kindOf(arguments.at(i - 1)))
            return i + 1;
    }
    return -1;
}

std::optional<QByteArray> readSource(const QString &entry, const Tools &tools)
{
    const QString path = entry.startsWith(u'/') ? entry : PathString::join(tools.folder, entry);
    return FileBytes::readAll(QFile::encodeName(path));
}

/// The text as Java has it: with its byte-order mark, and whatever is not valid.
QString textOf(const QByteArray &source, const QStringList &arguments)
{
    const QString encoding = arguments.value(arguments.lastIndexOf(u"--charset"_s) + 1);
    QString text;
    const auto fault =
        TextCodec(textEncodingNamed(encoding)).decode(source, [&text](QStringView piece) { text += piece; });
    if (fault)
        return QString::fromUtf8(source);
    return source.startsWith("\xEF\xBB\xBF") ? QChar(QChar::ByteOrderMark) + text : text;
}

Explanation saying(Kind kind, const QString &text)
{
    Explanation explanation;
    explanation.messages.shown.push_back({kind, text, 0, 0});
    return explanation;
}

/// What there is to say of a compressor that says nothing.
Explanation explainSilence(const FilterRun &run, const Filter &filter, bool isPattern)
{
    if (!run.isSuccess())
        return saying(Kind::Error, run.words(filter));
    if (isPattern)
        return saying(Kind::Error,
                      u"YUI Compressor takes a path with \":\" for a pattern, and wrote elsewhere"_s);
    return saying(Kind::Information, u"asked once more, with its output elsewhere, it did not fail"_s);
}

} // namespace

Explanation explainFailure(const QStringList &arguments, const Tools &tools, const std::atomic<Stop> &stop,
                           std::chrono::milliseconds limit)
{
    const qsizetype place = placeOfOutput(arguments);
    if (place < 0 || stop == Stop::AtOnce)
        return {};
    const QString &entry = arguments.at(place - 2);
    const std::optional<QByteArray> source = readSource(entry, tools);
    if (!source)
        return saying(Kind::Error, u"the source cannot be read"_s);
    const QTemporaryDir folder(temporaryFolderForOutputs());
    if (!folder.isValid())
        return saying(Kind::Error, folder.errorString());
    Filter filter{tools.java, arguments, tools.folder};
    filter.arguments[place] = folder.filePath(u"output"_s);
    const FilterRun run = runFilter(filter, {}, stop, limit);
    if (run.end == FilterRun::End::Stopped)
        return {};
    const Explanation explanation =
        readClassicMessages(run.messages + '\n' + run.output, textOf(*source, arguments));
    return explanation.messages.shown.empty()
               ? explainSilence(run, filter, isTakenForPattern(entry, arguments.at(place)))
               : explanation;
}

bool isForModern(const QStringList &arguments, int status, const CompressorCommand &command,
                 const Tools &tools, const std::atomic<Stop> &stop)
{
    // YUI Compressor tells errors of syntax by this status; htmlcompressor has one for all of them.
    constexpr int yuiSyntax = 2;
    constexpr int htmlFailure = 1;
    const qsizetype place = placeOfOutput(arguments);
    if (place < 0 || stop == Stop::AtOnce)
        return false;
    const QString &entry = arguments.at(place - 2);
    const FileKind &kind = *kindOf(entry);
    const bool isPage = kind.family == KindFamily::Markup;
    const std::optional<QByteArray> source =
        status == (isPage ? htmlFailure : yuiSyntax) ? readSource(entry, tools) : std::nullopt;
    FilterRunner filters(stop);
    return source &&
           minifyModern(kind, *source, command.modernOptions(kind), tools, entry, entry, filters)
               .error.isEmpty() &&
           (!isPage || explainFailure(arguments, tools, stop).isAboutSyntax);
}

} // namespace brevant
