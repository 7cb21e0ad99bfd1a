// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "queue/PathString.h"

#include <QDir>
#include <QFile>

namespace brevant::PathString {

namespace {

constexpr QChar separator = u'/';

QStringView withoutSeparatorsAtEnd(QStringView path)
{
    while (path.size() > 1 && path.endsWith(separator))
        path.chop(1);
    return path;
}

/// Where the dot before the extension stands in `name`, or -1.
qsizetype extensionDot(QStringView name)
{
    const qsizetype dot = name.lastIndexOf(u'.');
    return dot > 0 ? dot : -1;
}

} // namespace

QStringView lastComponent(QStringView path)
{
    path = withoutSeparatorsAtEnd(path);
    if (path.size() == 1)
        return path;
    return path.sliced(path.lastIndexOf(separator) + 1);
}

QStringView extension(QStringView path)
{
    const QStringView name = lastComponent(path);
    const qsizetype dot = extensionDot(name);
    return dot < 0 ? QStringView() : name.sliced(dot + 1);
}

QStringView stem(QStringView path)
{
    path = withoutSeparatorsAtEnd(path);
    const QStringView name = lastComponent(path);
    const qsizetype dot = extensionDot(name);
    return dot < 0 ? path : path.chopped(name.size() - dot);
}

QStringView folder(QStringView path)
{
    path = withoutSeparatorsAtEnd(path);
    const qsizetype slash = path.lastIndexOf(separator);
    if (slash < 0)
        return {};
    return withoutSeparatorsAtEnd(path.first(slash == 0 ? 1 : slash));
}

QString join(QStringView folder, QStringView name)
{
    while (folder.endsWith(separator))
        folder.chop(1);
    QString joined;
    joined.reserve(folder.size() + 1 + name.size());
    joined.append(folder);
    joined.append(separator);
    joined.append(name);
    return joined;
}

QString withExtension(QStringView path, QStringView extension)
{
    QString whole;
    whole.reserve(path.size() + 1 + extension.size());
    whole.append(path);
    whole.append(u'.');
    whole.append(extension);
    return whole;
}

QString absolute(const QString &path)
{
    if (path.startsWith(separator))
        return path;
    QStringView relative = path;
    while (relative.startsWith(QLatin1StringView("./"))) {
        relative = relative.sliced(2);
        while (relative.startsWith(separator))
            relative = relative.sliced(1);
    }
    if (relative.isEmpty() || relative == u'.')
        return QDir::currentPath();
    return join(QDir::currentPath(), relative);
}

QString expandTilde(const QString &path)
{
    if (path == u'~' || path.startsWith(QLatin1StringView("~/")))
        return QDir::homePath().append(QStringView(path).sliced(1));
    return path;
}

QString decoded(const QByteArray &name)
{
    constexpr QByteArrayView mark("\xEF\xBB\xBF");
    qsizetype marks = 0;
    while (QByteArrayView(name).sliced(marks * mark.size()).startsWith(mark))
        ++marks;
    if (marks == 0)
        return QFile::decodeName(name);
    return QString(marks, QChar(QChar::ByteOrderMark)) + QFile::decodeName(name.sliced(marks * mark.size()));
}

} // namespace brevant::PathString
