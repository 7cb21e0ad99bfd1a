// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/check/ResultCheck.h"

#include "engine/check/PageCheck.h"
#include "engine/check/ScriptCheck.h"
#include "engine/check/StyleSheetCheck.h"
#include "files/FileBytes.h"
#include "files/Folders.h"

#include <QFile>

#include <cerrno>

namespace brevant {

namespace {

using namespace Qt::StringLiterals;

std::optional<QString> decoded(QByteArrayView bytes, TextEncoding encoding)
{
    QString text;
    const bool isWhole = !TextCodec(encoding).decode(bytes, [&](QStringView piece) { text.append(piece); });
    return isWhole ? std::optional(text) : std::nullopt;
}

QList<ResultWarning> checkText(KindFamily family, QStringView source, QStringView result)
{
    switch (family) {
    case KindFamily::StyleSheet:
        return checkStyleSheet(source, result);
    case KindFamily::Script:
        return checkScript(source, result);
    case KindFamily::Markup:
        return checkPage(source, result);
    }
    Q_UNREACHABLE();
}

} // namespace

QList<ResultWarning> checkResult(KindFamily family, QStringView source, QStringView result)
{
    QList<ResultWarning> warnings = checkText(family, source, result);
    if (!source.isEmpty() && result.size() >= source.size())
        warnings.append({ResultWarning::Kind::NotSmaller});
    return warnings;
}

CheckedFile checkFile(const QString &source, const QString &output, TextEncoding encoding,
                      const std::optional<QByteArray> &content)
{
    const FileKind *const kind = kindOf(source);
    if (kind == nullptr || (!content && FileMarks::areOfSameFile(source, output)))
        return {u"the source is not there any more"_s, {}};
    const auto before = content ? content : FileBytes::readAll(QFile::encodeName(source));
    const auto after = before ? FileBytes::readAll(QFile::encodeName(output)) : std::nullopt;
    if (!after)
        return {
            u"the %1 cannot be read: %2"_s.arg(before ? u"output"_s : u"source"_s, qt_error_string(errno)),
            {}};
    const std::optional<QString> sourceText = decoded(*before, encoding);
    const std::optional<QString> resultText = decoded(*after, encoding);
    if (!sourceText || !resultText)
        return {u"the %1 is not valid %2"_s.arg(sourceText ? u"output"_s : u"source"_s, nameOf(encoding)),
                {}};
    return {{}, checkResult(kind->family, *sourceText, *resultText)};
}

} // namespace brevant
