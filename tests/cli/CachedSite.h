// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/BuildCache.h"
#include "tests/Files.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <cstdlib>

#include <fcntl.h>
#include <sys/stat.h>

namespace brevant::test {

inline const QByteArray sourceText("a { b : c ; }");
inline const QByteArray outputText("a{b:c}");

/// A folder with a source, its output and that one's gzip copy, all recorded.
class CachedSite final {
public:
    explicit CachedSite(const QString &name = u"a"_s)
        : source(m_folder.filePath(name + u".css"_s)), output(m_folder.filePath(name + u".min.css"_s))
    {
        if (!writeFile(source, sourceText) || !makeOlder(source))
            std::abort();
        make();
    }

    [[nodiscard]] QString path(const QString &name = u".brevant-cache.json"_s) const
    {
        return m_folder.filePath(name);
    }
    [[nodiscard]] QString folder() const { return m_folder.path(); }
    [[nodiscard]] MadeOutput wanted() const { return {source, output, {u"gz"_s, u"br"_s}, "recipe"}; }
    [[nodiscard]] bool isUpToDate() const { return BuildCache(folder()).isUpToDate(wanted()); }

    /// The names in the file.
    [[nodiscard]] QStringList names() const
    {
        return QJsonDocument::fromJson(readFile(path())).object()[u"files"].toObject().keys();
    }

    void make() const
    {
        BuildCache cache(folder());
        cache.begin(wanted());
        if (!writeFile(output, outputText) || !writeFile(output + ".gz"_L1, "packed"))
            std::abort();
        cache.made(wanted());
        if (!cache.save().isEmpty())
            std::abort();
    }

    /// Changes the times as a program might that copies files with them, so that the changed one is theirs.
    static bool makeOlder(const QString &file, time_t seconds = 1'000'000'000)
    {
        const timespec times[]{{seconds, 0}, {seconds, 0}};
        return ::utimensat(AT_FDCWD, QFile::encodeName(file).constData(), times, 0) == 0;
    }

private:
    QTemporaryDir m_folder;

public:
    const QString source;
    const QString output;
};

} // namespace brevant::test
