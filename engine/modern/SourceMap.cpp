// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/modern/SourceMap.h"

#include "files/PathString.h"
#include "queue/FileKind.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUrl>

namespace brevant {

namespace {

using namespace Qt::StringLiterals;

/// Sources and maps are named by URLs, relative ones here.
QByteArray urlOf(const QString &path)
{
    return QUrl::toPercentEncoding(path, "/");
}

} // namespace

QString sourceMapPath(const QString &outputPath)
{
    return PathString::withExtension(outputPath, u"map");
}

QByteArray takeSourceMap(QByteArray &output, const QString &sourcePath, const QString &outputPath)
{
    constexpr QByteArrayView start("# sourceMappingURL=data:application/json;base64,");
    // Qt 6.4 reads past the end of a text that is shorter than what it looks for.
    const qsizetype link = output.size() < start.size() ? -1 : output.lastIndexOf(start);
    if (link < 2)
        return {};
    QByteArray base64 = output.sliced(link + start.size());
    if (base64.endsWith(" */"))
        base64.chop(3);
    QJsonObject map = QJsonDocument::fromJson(QByteArray::fromBase64(base64)).object();
    output.truncate(link - 2); // with the beginning of the comment
    while (output.endsWith('\n'))
        output.chop(1);
    const QDir folder(PathString::folder(outputPath).toString());
    map[u"file"_s] = PathString::lastComponent(outputPath).toString();
    map[u"sources"_s] = QJsonArray{QString::fromLatin1(urlOf(folder.relativeFilePath(sourcePath)))};
    return QJsonDocument(map).toJson(QJsonDocument::Compact);
}

QByteArray sourceMapLink(const FileKind &kind, const QString &outputPath)
{
    const QByteArray url = urlOf(PathString::lastComponent(sourceMapPath(outputPath)).toString());
    return kind.family == KindFamily::StyleSheet ? "\n/*# sourceMappingURL=" + url + " */"
                                                 : "\n//# sourceMappingURL=" + url;
}

} // namespace brevant
