// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/EntryResult.h"
#include "engine/MinifyJob.h"
#include "queue/FileQueue.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"
#include "tests/Files.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <functional>

namespace brevant::test {

using namespace Qt::StringLiterals;

/// Writes down every call with its facts, and can do something of its own when an entry is announced.
class RecordingObserver final : public RunObserver {
public:
    QStringList calls;
    std::vector<EntryResult> results;
    std::function<void(const QString &status)> onStatus;

    void runStarted() override { calls.append(u"started"_s); }
    void entryStarted(const EntryStart &start) override
    {
        calls.append(u"%1/%2 %3: %4"_s.arg(start.index)
                         .arg(start.count)
                         .arg(QFileInfo(start.path).fileName(), start.status));
        if (onStatus)
            onStatus(start.status);
    }
    void entryEnded(const EntryResult &result) override
    {
        calls.append(QFileInfo(result.source).fileName() + u" ended"_s);
        results.push_back(result);
    }
    void runEnded(RunEnd, const QString &status) override { calls.append(u"ended: "_s + status); }
};

/// A queue, settings and a folder for runs with the stub for Java.
struct JobFixture {
    JobFixture()
    {
        settings.registerDefaults(registeredDefaults());
        QDir(folder.path()).mkdir(u"lib"_s);
        tools = Tools::inResources(folder.path());
        tools.java = QStringLiteral(STUB_JAVA);
        tools.originals = {path(u"originals"_s)};
        qputenv("BREVANT_STUB_LOG", QFile::encodeName(path(u"log"_s)));
    }

    [[nodiscard]] QString path(const QString &name) const { return folder.filePath(name); }
    [[nodiscard]] bool has(const QString &name) const { return QFile::exists(path(name)); }

    /// Writes a file; `text` tells the stub what to do.
    QString add(const QString &name, QByteArrayView text = "copy") const
    {
        return writeFile(path(name), text) ? path(name) : QString();
    }

    /// Writes a file and puts it on the list.
    QString append(const QString &name, QByteArrayView text = "copy")
    {
        QString source = add(name, text);
        queue.append(source);
        return source;
    }

    RunEnd run(int jobs = 1, Refusal refusal = {})
    {
        return MinifyJob(queue, settings, tools, observer, stop, std::move(refusal)).run(jobs);
    }

    /// The calls of the stub: folder and arguments.
    [[nodiscard]] QStringList log() const
    {
        return has(u"log"_s) ? QString::fromUtf8(readFile(path(u"log"_s))).split(u'\n', Qt::SkipEmptyParts)
                             : QStringList();
    }

    QTemporaryDir folder;
    SettingsStore settings{path(u"settings.json"_s)};
    FileQueue queue;
    Tools tools;
    RecordingObserver observer;
    std::atomic<Stop> stop = Stop::No;
};

} // namespace brevant::test
