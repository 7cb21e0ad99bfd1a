// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/project/InitProject.h"

#include "cli/GitIgnored.h"
#include "cli/project/ProjectFile.h"
#include "files/Descriptor.h"
#include "files/FileBytes.h"
#include "files/PathString.h"
#include "files/RawBytes.h"

#include <QFileInfo>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

QString inQuotes(const QStringList &texts)
{
    return u"[\"%1\"]"_s.arg(texts.join(u"\", \""));
}

/// By the names that people use, all of which can stand in JSON as they are.
QByteArray contentFor(const QString &folder)
{
    const auto has = [&folder](const QString &name) {
        return QFileInfo(PathString::join(folder, name)).isDir();
    };
    QStringList paths;
    for (const QString &name : {u"src"_s, u"public"_s, u"static"_s, u"assets"_s}) {
        if (paths.isEmpty() && has(name))
            paths.append(name);
    }
    QStringList excluded{u"*.min.*"_s};
    for (const QString &name : {u"vendor"_s, u"third_party"_s, u"bower_components"_s, u"coverage"_s}) {
        if (has(name))
            excluded.append(name + u'/');
    }
    QString text = u"{\n    \"paths\": %1,\n    \"exclude\": %2,\n"_s.arg(
        inQuotes(paths.isEmpty() ? QStringList(u"."_s) : paths), inQuotes(excluded));
    if (isRepository(folder))
        text += u"    \"gitignore\": true,\n"_s;
    return (text + u"    \"outDir\": \"dist\"\n}\n"_s).toUtf8();
}

} // namespace

NewProject initProject(const QString &folder)
{
    if (folder.isEmpty()) // the root would take its place
        return {{}, u"the working folder is gone"_s};
    const QString path = PathString::join(folder, ProjectFile::name);
    const QByteArray content = contentFor(folder);
    const Descriptor file = openFile(RawBytes::encoded(path), O_WRONLY | O_CREAT | O_EXCL, 0644);
    if (!file.isOpen() && errno == EEXIST)
        return {{}, u"%1 is there already; change it, or remove it first"_s.arg(path)};
    if (!file.isOpen() || !FileBytes::writeAll(file.number(), content, 0)) {
        const QString why = qt_error_string(errno);
        if (file.isOpen())
            ::unlink(RawBytes::encoded(path).constData());
        return {{}, u"%1 cannot be written: %2"_s.arg(path, why)};
    }
    return {u"Wrote %1:\n\n%2\nNext: brevant-cli --list\n"_s.arg(printable(path), QString::fromUtf8(content)),
            {}};
}

} // namespace brevant
