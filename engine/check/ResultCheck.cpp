// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/check/ResultCheck.h"

#include "engine/check/PageCheck.h"
#include "engine/check/ScriptCheck.h"
#include "engine/check/StyleSheetCheck.h"
#include "files/FileBytes.h"

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

CheckedFile checkBytes(KindFamily family, QByteArrayView source, QByteArrayView result, TextEncoding encoding)
{
    const std::optional<QString> before = decoded(source, encoding);
    const std::optional<QString> after = decoded(result, encoding);
    if (!before || !after)
        return {u"the %1 is not valid %2"_s.arg(before ? u"output"_s : u"source"_s, nameOf(encoding)), {}};
    return {{}, checkResult(family, *before, *after)};
}

CheckedFile checkFile(const QString &source, const QString &output, TextEncoding encoding)
{
    const FileKind *const kind = kindOf(source);
    const auto before = FileBytes::readAll(QFile::encodeName(source));
    const auto after = before ? FileBytes::readAll(QFile::encodeName(output)) : std::nullopt;
    if (kind == nullptr || !after)
        return {
            u"the %1 cannot be read: %2"_s.arg(before ? u"output"_s : u"source"_s, qt_error_string(errno)),
            {}};
    return checkBytes(kind->family, *before, *after, encoding);
}

} // namespace brevant
