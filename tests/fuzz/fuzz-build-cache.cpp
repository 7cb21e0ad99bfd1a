// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The bytes are a .brevant-cache.json beside a source and an output. Whatever it says, an output is called up
// to date only with the content that is recorded, and nothing but JSON is written.
#include "cli/BuildCache.h"
#include "tests/fuzz/Fuzzing.h"

#include <QJsonDocument>
#include <QTemporaryDir>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const QTemporaryDir folder(u"/dev/shm/brevant-fuzz-XXXXXX"_s);
    const QString cacheFile = folder.filePath(BuildCache::fileName);
    const MadeOutput wanted{folder.filePath(u"a.css"_s), folder.filePath(u"a.min.css"_s), {u"gz"_s}, "r"};
    write(wanted.source, "a { b : c ; }");
    write(wanted.output, "a{b:c}");
    write(cacheFile, bytesOf(data, size));

    BuildCache cache(folder.path());
    const bool isUpToDate = cache.isUpToDate(wanted);
    const QStringList own = cache.ownFiles(wanted.source, wanted.output);
    require(!isUpToDate || own.contains(wanted.output), "what is up to date was made from its source");
    for (const QString &file : own)
        require(file == wanted.output, "nothing else is there that could be its own");
    cache.begin(wanted);
    cache.made(wanted);
    require(cache.save().isEmpty(), "the file can be written");
    require(QJsonDocument::fromJson(read(cacheFile)).isObject(), "the file is JSON");
    write(wanted.output, "a{b:d}");
    require(!BuildCache(folder.path()).isUpToDate(wanted), "another content is noticed");
    write(wanted.output, "a{b:c}");
    require(BuildCache(folder.path()).isUpToDate(wanted), "what was made is known");
    return 0;
}
