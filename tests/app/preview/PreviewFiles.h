// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

namespace brevant::test {

/// A folder of files to look at.
class PreviewFiles final {
public:
    [[nodiscard]] QString path(const QString &name) const { return m_folder.filePath(name); }

    /// The path of a new file.
    [[nodiscard]] QString add(const QString &name, const QByteArray &content) const
    {
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("%s cannot be written", qPrintable(file.fileName()));
        return file.fileName();
    }

private:
    QTemporaryDir m_folder;
};

/// One line of CSS.
[[nodiscard]] inline QByteArray oneLineOfCss(qsizetype size)
{
    QByteArray text;
    text.reserve(size + 100);
    for (int number = 0; text.size() < size; ++number)
        text += ".a" + QByteArray::number(number) + ">b:hover{margin:0 " + QByteArray::number(number % 40) +
                "px}";
    text.truncate(size);
    return text;
}

} // namespace brevant::test
