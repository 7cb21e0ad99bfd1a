// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/EntryRun.h"
#include "tests/engine/JobFixture.h"
#include "tests/engine/LeftCopy.h"

#include <QTest>

namespace brevant::test {

/// A test of what becomes of sources in the folder "site", by the stub for Java.
class SourcesTest : public QObject {
protected:
    void setUp(const QString &originals)
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_settings = std::make_unique<SettingsStore>(path(u"settings.json"_s));
        m_settings->registerDefaults(registeredDefaults());
        for (const QString &name : {u"lib"_s, u"site"_s, u"out"_s})
            QDir(m_folder->path()).mkdir(name);
        m_tools = Tools::inResources(m_folder->path());
        m_tools.java = QStringLiteral(STUB_JAVA);
        m_originals = path(originals);
        m_tools.originals = {m_originals};
    }

    [[nodiscard]] QString path(const QString &name) const { return m_folder->filePath(name); }

    /// Writes a source; `text` tells the stub what to do.
    QString add(const QString &name, const QByteArray &text) const
    {
        const QString file = QDir::cleanPath(path(u"site/"_s + name));
        QDir().mkpath(QFileInfo(file).path());
        if (!writeFile(file, text))
            qFatal("%s", qPrintable(file));
        return file;
    }

    /// Works on one entry.
    EntryResult run(const QString &source, const std::optional<QString> &output)
    {
        const FileQueue queue;
        const CompressorCommand command(*m_settings);
        EntryRun entryRun(queue, m_tools, m_stop);
        return entryRun.run({source, output, output, {}, &command}).value_or(EntryResult());
    }

    /// Runs over a list.
    std::vector<EntryResult> run(const QStringList &entries)
    {
        FileQueue queue;
        for (const QString &entry : entries)
            queue.append(entry);
        m_observer.results.clear();
        MinifyJob(queue, *m_settings, m_tools, m_observer, m_stop).run();
        return m_observer.results.empty() ? std::vector<EntryResult>(1) : m_observer.results;
    }

    [[nodiscard]] QStringList leftInFolder() const
    {
        QStringList names =
            QDir(m_originals).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
        names.removeOne(u"locks"_s);
        return names;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<SettingsStore> m_settings;
    RecordingObserver m_observer;
    std::atomic<Stop> m_stop = Stop::No;
    QString m_originals;
    Tools m_tools;
};

} // namespace brevant::test
