// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The bytes are a settings file. Every key is read in every way; then one is set, which must keep what the
// file held.
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"
#include "tests/fuzz/Fuzzing.h"

#include <QFile>
#include <QJsonDocument>
#include <QTemporaryDir>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const QTemporaryDir folder(u"/dev/shm/brevant-fuzz-XXXXXX"_s);
    const QByteArray bytes = bytesOf(data, size).toByteArray();
    const QString path = folder.filePath(u"settings.json"_s);
    const QString bad = path + ".bad"_L1;
    QFile::remove(bad);
    write(path, bytes);
    const QJsonObject defaults = registeredDefaults();
    {
        SettingsStore store(path);
        store.registerDefaults(defaults);
        for (const QString &name : defaults.keys()) {
            const QByteArray latin = name.toLatin1();
            const QLatin1StringView key(latin);
            require(!store.objectForKey(key).isUndefined(), "every key has a value");
            static_cast<void>(store.stringForKey(key));
            const bool isOn = store.boolForKey(key);
            require(!store.isTrue(key) || (isOn && !store.isFalse(key)), "true is on, and not false");
            require(!store.isFalse(key) || !isOn, "false is off");
        }
        store.setObject(u"-x"_s, suffixKeyString);
        store.synchronize();
    }
    QJsonObject expected = QJsonDocument::fromJson(bytes).object();
    if (!QJsonDocument::fromJson(bytes).isObject())
        require(read(bad) == bytes, "what holds no settings is kept");
    expected.insert(suffixKeyString, u"-x"_s);
    require(QJsonDocument::fromJson(read(path)).object() == expected, "everything else is as it was");
    return 0;
}
