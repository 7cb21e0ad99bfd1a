// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/ChangedFiles.h"
#include "cli/CommandLine.h"
#include "engine/Tools.h"
#include "files/RawBytes.h"
#include "queue/FileQueue.h"
#include "settings/SettingsKeys.h"
#include "tests/Files.h"
#include "tests/TestClass.h"

#include <QTest>

using namespace brevant;
using namespace brevant::test;

class tst_ChangedFiles final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_line = CommandLine();
        m_line.outDir = m_folder->path();
        m_settings = std::make_unique<SettingsStore>(m_folder->filePath(u"settings.json"_s));
        m_settings->registerDefaults(registeredDefaults());
    }

    /// What it was made by is not known then.
    void settingsChangedMeanwhile_data()
    {
        QTest::addColumn<bool>("meanwhile");
        QTest::newRow("before") << false;
        QTest::newRow("meanwhile") << true;
    }

    void settingsChangedMeanwhile()
    {
        QFETCH(bool, meanwhile);
        const QString source = m_folder->filePath(u"a.css"_s);
        const QString output = m_folder->filePath(u"a.min.css"_s);
        QVERIFY(writeFile(source, "a { b : c }"));
        ChangedFiles changed(m_line, *m_settings, m_tools);
        FileQueue queue;
        queue.append(source);
        QCOMPARE(changed.leaveOutUnchanged(queue), QString());
        QCOMPARE(queue.count(), 1);
        if (!meanwhile)
            m_settings->setOverride(true, lineBreakSwitcherKeyString);
        changed.entryTaken(source, output);
        QVERIFY(writeFile(output, "a{b:c}"));
        m_settings->setOverride(true, lineBreakSwitcherKeyString);
        changed.entryDone(source, output);
        changed.save();
        QCOMPARE(isLeftOut(source), !meanwhile);
        m_settings->setOverride(false, lineBreakSwitcherKeyString);
        QVERIFY(!isLeftOut(source));
    }

    /// A name that is not UTF-8 is none of those that look like it.
    void rawBytes()
    {
        for (const QString &name : {u"?"_s, u"\ufffd"_s, u"\u00e9"_s}) {
            const QString source = m_folder->filePath(name + u".css"_s);
            const QString output = m_folder->filePath(name + u".min.css"_s);
            ChangedFiles changed(m_line, *m_settings, m_tools);
            QVERIFY(writeFile(source, "a { b : c }"));
            changed.entryTaken(source, output);
            QVERIFY(writeFile(output, "a{b:c}"));
            changed.entryDone(source, output);
            changed.save();
            QVERIFY(isLeftOut(source));
        }
        QVERIFY(!isLeftOut(m_folder->filePath(RawBytes::decoded("\xe9.css"))));
    }

private:
    [[nodiscard]] bool isLeftOut(const QString &source) const
    {
        ChangedFiles changed(m_line, *m_settings, m_tools);
        FileQueue queue;
        queue.append(source);
        return changed.leaveOutUnchanged(queue).isEmpty() && queue.isEmpty();
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<SettingsStore> m_settings;
    const Tools m_tools = Tools::inResources(u"/nowhere"_s);
    CommandLine m_line;
};

BREVANT_TEST(tst_ChangedFiles, QCoreApplication)
#include "tst_ChangedFiles.moc"
