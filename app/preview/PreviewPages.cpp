// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/preview/PreviewPages.h"

#include "files/RawBytes.h"
#include "files/SizeText.h"

#include <QCoreApplication>

#include <cmath>

#include <sys/stat.h>

namespace brevant {

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("PreviewPages", text);
}

/// Nothing if there is no such file.
std::optional<qint64> regularSize(const QString &path)
{
    struct stat status {};
    if (path.isEmpty() || ::stat(RawBytes::encoded(path).constData(), &status) != 0 ||
        !S_ISREG(status.st_mode))
        return std::nullopt;
    return status.st_size;
}

/// " (37.9 % saved)"; empty for a source without bytes.
QString difference(qint64 before, qint64 after)
{
    if (before == 0)
        return {};
    const double percent = 100 * (1 - static_cast<double>(after) / static_cast<double>(before));
    return (percent < 0 ? tr(" (%1 % larger)") : tr(" (%1 % saved)")).arg(std::abs(percent), 0, 'f', 1);
}

} // namespace

std::optional<PreviewContent> readPreviewPage(const QString &path, const QString &original,
                                              const QString &output, bool isOutputWanted,
                                              const QString &encoding, const std::function<bool()> &cancelled)
{
    const std::optional<qint64> outputSize = regularSize(output);
    const bool isOutput = isOutputWanted && outputSize;
    const QString source = original.isEmpty() ? path : original;
    std::optional<PreviewContent> content = readPreview(isOutput ? output : source, encoding, cancelled);
    if (!content)
        return content;
    content->path = path;
    content->isOutput = isOutput;
    content->otherSize = isOutput ? regularSize(source) : outputSize;
    return content;
}

QString sizesText(const PreviewContent &content)
{
    QString size = sizeText(content.size);
    if (!content.otherSize)
        return size;
    const QString other = sizeText(*content.otherSize);
    return content.isOutput
               ? tr("%1, source %2").arg(size, other) + difference(*content.otherSize, content.size)
               : tr("%1, minified %2").arg(size, other) + difference(content.size, *content.otherSize);
}

} // namespace brevant
