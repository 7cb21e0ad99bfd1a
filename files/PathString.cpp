// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/PathString.h"

#include <QDir>
#include <QFile>
#include <QStringBuilder>
#include <QStringDecoder>

#include <algorithm>
#include <array>

#include <pwd.h>
#include <unistd.h>

namespace brevant::PathString {

namespace {

constexpr QChar separator = u'/';

/// As QStringView::lastIndexOf(), without its price for each call.
qsizetype lastIndexOf(QStringView text, QChar sign)
{
    const QChar *at = text.end();
    while (at != text.begin() && at[-1] != sign)
        --at;
    return at - text.begin() - 1;
}

QStringView withoutSeparatorsAtEnd(QStringView path)
{
    while (path.size() > 1 && path.endsWith(separator))
        path.chop(1);
    return path;
}

/// Where the dot before the extension stands in a path without separators at its end, or -1.
qsizetype extensionDot(QStringView path)
{
    qsizetype at = path.size() - 1;
    while (at >= 0 && path[at] != u'.' && path[at] != separator)
        --at;
    const bool isWithinName = at > 0 && path[at] == u'.' && path[at - 1] != separator;
    return isWithinName ? at : -1;
}

char16_t inLowerCase(QChar letter)
{
    const char16_t code = letter.unicode();
    return code >= u'A' && code <= u'Z' ? code + (u'a' - u'A') : code;
}

/// The home folder of the user that `look` finds; empty if there is none.
template <typename Look>
QString homeOf(const Look &look)
{
    std::array<char, 16384> buffer{};
    passwd entry{};
    passwd *found = nullptr;
    look(&entry, buffer.data(), buffer.size(), &found);
    return found != nullptr ? decoded(found->pw_dir) : QString();
}

QString homeOf(const QString &name)
{
    return homeOf(
        [name = QFile::encodeName(name)](auto... room) { ::getpwnam_r(name.constData(), room...); });
}

} // namespace

QStringView lastComponent(QStringView path)
{
    path = withoutSeparatorsAtEnd(path);
    if (path.size() == 1)
        return path;
    return path.sliced(lastIndexOf(path, separator) + 1);
}

QStringView extension(QStringView path)
{
    path = withoutSeparatorsAtEnd(path);
    const qsizetype dot = extensionDot(path);
    return dot < 0 ? QStringView() : path.sliced(dot + 1);
}

bool isSameExtension(QStringView one, QStringView other)
{
    return std::ranges::equal(one, other, {}, inLowerCase, inLowerCase);
}

bool hasExtension(QStringView path, QStringView wanted)
{
    return isSameExtension(extension(path), wanted);
}

QStringView stem(QStringView path)
{
    path = withoutSeparatorsAtEnd(path);
    const qsizetype dot = extensionDot(path);
    return dot < 0 ? path : path.first(dot);
}

QStringView folder(QStringView path)
{
    path = withoutSeparatorsAtEnd(path);
    const qsizetype slash = lastIndexOf(path, separator);
    if (slash < 0)
        return {};
    return withoutSeparatorsAtEnd(path.first(slash == 0 ? 1 : slash));
}

QString join(QStringView folder, QStringView name)
{
    while (folder.endsWith(separator))
        folder.chop(1);
    return folder % separator % name;
}

QString withExtension(QStringView path, QStringView extension)
{
    return path % u'.' % extension;
}

QString absolute(const QString &path)
{
    if (path.startsWith(separator))
        return path;
    QStringView relative = path;
    while (relative.startsWith(u"./")) {
        do
            relative = relative.sliced(1);
        while (relative.startsWith(separator));
    }
    if (relative.isEmpty() || relative == u'.')
        return QDir::currentPath();
    return join(QDir::currentPath(), relative);
}

QString home()
{
    QString listed;
    if (!qgetenv("HOME").startsWith('/'))
        listed = homeOf([](auto... room) { ::getpwuid_r(::getuid(), room...); });
    return listed.isEmpty() ? QDir::homePath() : listed;
}

QString expandTilde(const QString &path)
{
    if (!path.startsWith(u'~'))
        return path;
    const QString first = path.section(separator, 0, 0);
    const QString found = first.size() == 1 ? home() : homeOf(first.sliced(1));
    return found.isEmpty() ? path : found + path.sliced(first.size());
}

QString withTilde(const QString &path)
{
    const QString folder = home();
    const bool isBelow = path == folder || path.startsWith(folder + separator);
    return isBelow ? u'~' + path.sliced(folder.size()) : path;
}

QString decoded(const QByteArray &name)
{
    if (!name.startsWith("\xef\xbb\xbf"))
        return QString::fromUtf8(name);
    using Flag = QStringDecoder::Flag;
    QStringDecoder decoder(QStringDecoder::Utf8, Flag::ConvertInitialBom | Flag::Stateless);
    return decoder(name);
}

} // namespace brevant::PathString
