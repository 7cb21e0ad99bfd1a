// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/check/CheckBasis.h"

#include "engine/check/ResultCheck.h"
#include "files/FileBytes.h"

#include <QFile>

namespace brevant {

using namespace Qt::StringLiterals;

/// In bytes. A check takes up to a second for each million.
constexpr qint64 largestFile = 20'000'000;

/// What has changed since the run; empty if nothing has.
QString CheckBasis::change(const QString &sourcePath, const QString &outputPath) const
{
    if (FileState::of(original.isEmpty() ? sourcePath : original) != source)
        return original.isEmpty() ? u"the source has changed since the run"_s
                                  : u"its original is not kept any more"_s;
    if (FileState::of(outputPath) != output)
        return u"the output has changed since the run"_s;
    return {};
}

CheckedFile CheckBasis::checkNow(const QString &sourcePath, const QString &outputPath) const
{
    if (original.isEmpty())
        return checkFile(sourcePath, outputPath, encoding);
    const std::optional<QByteArray> content = FileBytes::readAll(QFile::encodeName(original));
    return content ? checkFile(sourcePath, outputPath, encoding, content)
                   : CheckedFile{u"its original cannot be read"_s, {}};
}

CheckedFile CheckBasis::check(const QString &sourcePath, const QString &outputPath) const
{
    if (source.size > largestFile)
        return {u"the source is larger than 20 MB"_s, {}};
    if (output.size > largestFile)
        return {u"the output is larger than 20 MB"_s, {}};
    // Before, as what is there now may be of any size; and after, as it may change during the check.
    QString obstacle = change(sourcePath, outputPath);
    if (!obstacle.isEmpty())
        return {obstacle, {}};
    CheckedFile checked = checkNow(sourcePath, outputPath);
    obstacle = change(sourcePath, outputPath);
    return obstacle.isEmpty() ? checked : CheckedFile{obstacle, {}};
}

} // namespace brevant
