// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "queue/FileQueue.h"
#include "queue/FolderWalk.h"
#include "tests/Files.h"
#include "tests/TestClass.h"
#include "tests/queue/QueueSettings.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>
#include <initializer_list>
#include <thread>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

class tst_AddFiles final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
        for (const SettingKey &setting : allSettingKeys)
            m_settings.set(setting.key, registeredDefaults().value(setting.key));
    }

    void onePath_data()
    {
        QTest::addColumn<bool>("taken");
        for (const char *path : {"/no/such/a.css", "/no/such/Theme.CSS", "relative.js", "~/a.js",
                                 "/x/../a.css", "/x//a.css", "/x/page.html", "/x/a.css/", "/x/a.min.js"})
            QTest::newRow(path) << true;
        for (const char *path : {"/x/notes.txt", "/x/Makefile", "/x/page.php", "/x/.css", ""})
            QTest::newRow(path) << false;
    }

    void onePath()
    {
        QFETCH(bool, taken);
        const QString path = QString::fromLatin1(QTest::currentDataTag());
        QCOMPARE(added(path), taken ? QStringList{path} : QStringList()); // as it was delivered
    }

    void folderContentsInWalkOrder()
    {
        for (int i = 0; i < 40; ++i)
            make({u"%1.css"_s.arg((i * 17) % 40).toLatin1().constData(),
                  u".h%1/d/%2.js"_s.arg(i % 3).arg(i).toLatin1().constData()});
        make({"notes.txt", "sub/page.php"});
        QStringList expected;
        walkFolder(m_folder->path(), [&](const QString &path) {
            if (path.endsWith(".css"_L1) || path.endsWith(".js"_L1))
                expected << m_folder->path() + u'/' + path;
        });
        QCOMPARE(expected.size(), 80);
        QCOMPARE(added(m_folder->path()), expected);
    }

    void folderNamedLikeAFile()
    {
        make({"theme.css/a.js", "theme.css/sub.js/b.txt"});
        const QStringList entries = added(at("theme.css"));
        QCOMPARE(entries.size(), 3);
        QCOMPARE(entries.last(), at("theme.css")); // after its contents
        QCOMPARE(sorted(entries), paths({"theme.css", "theme.css/a.js", "theme.css/sub.js"}));
        QCOMPARE(sorted(added(m_folder->path())), paths({"theme.css", "theme.css/a.js", "theme.css/sub.js"}));
    }

    void linkNamedLikeAFile()
    {
        make({"top/a.css", "other/b.css"});
        QVERIFY(makeLink(u"../other"_s, at("top/theme.css")));
        QVERIFY(makeLink(u"../other"_s, at("top/plain")));
        QCOMPARE(sorted(added(at("top"))), paths({"top/a.css", "top/theme.css"}));
    }

    void topLinkToAFolder()
    {
        make({"other/b.css"});
        QVERIFY(makeLink(u"other"_s, at("link.css")));
        const QStringList expected{at("link.css/b.css"), at("link.css")};
        QCOMPARE(added(at("link.css")), expected);
    }

    void separatorAtTheEnd()
    {
        make({"theme.css/a.js"});
        const QStringList one{at("theme.css/a.js"), at("theme.css/")};
        QCOMPARE(added(at("theme.css/")), one);
        const QStringList many{at("theme.css/a.js"), at("theme.css///")};
        QCOMPARE(added(at("theme.css///")), many);
    }

    void minifiedNamesInAFolder()
    {
        make({"w/a.js", "w/a.min.js"});
        QCOMPARE(sorted(added(at("w"))), paths({"w/a.js", "w/a.min.js"}));
        m_settings.set(filterCheckerKeyString, true);
        QCOMPARE(added(at("w")), paths({"w/a.js"}));
        m_settings.set(suffixKeyString, u"-x"_s);
        QCOMPARE(added(at("w")), paths({"w/a.js"}));
    }

    void kindsSwitchedOff()
    {
        make({"w/index.html", "w/a.css", "w/b.phtml", "w/c.php"});
        QCOMPARE(sorted(added(at("w"))), paths({"w/a.css", "w/index.html"}));
        m_settings.set(enableHTMLCheckerKeyString, false);
        QCOMPARE(added(at("w")), paths({"w/a.css"}));
        m_settings.set(enablePHPCheckerKeyString, true);
        QCOMPARE(sorted(added(at("w"))), paths({"w/a.css", "w/b.phtml", "w/c.php"}));
    }

    void whatIsThereKeepsItsPlace()
    {
        make({"w/a.css", "w/b.css"});
        FileQueue queue;
        queue.append(at("w/b.css"));
        queue.append(u"/z.css"_s);
        for (int round = 0; round < 2; ++round) {
            addTopLevelPath(at("w"), queue, m_settings.store());
            addTopLevelPath(at("w/a.css"), queue, m_settings.store());
            const QStringList expected{at("w/b.css"), u"/z.css"_s, at("w/a.css")};
            QCOMPARE(entriesOf(queue), expected);
        }
        addTopLevelPath(at("w/"), queue, m_settings.store()); // joined with one separator, so equal again
        QCOMPARE(queue.count(), 3);
    }

    void settingsChangedDuringTheWalk()
    {
        // Each path is judged by the settings of its moment, which a file can change while the walk goes on:
        // here a writer turns the switch without end, and a tree is walked until it has been caught in the
        // middle.
        for (int i = 0; i < 300; ++i)
            make({u"w/%1.php"_s.arg(i).toLatin1().constData()});
        QVERIFY(writeFile(at("settings.json"), R"({"enablePHPCheckerKeyString": false})"));
        SettingsStore store(at("settings.json"));
        const QDeadlineTimer deadline(20000);
        bool caught = false;
        std::atomic<bool> stop = false;
        std::thread user([&] {
            for (bool on = true; !stop; on = !on)
                replaceFile(at("settings.json"), on ? R"({"enablePHPCheckerKeyString": true })"
                                                    : R"({"enablePHPCheckerKeyString": false})");
        });
        while (!caught && !deadline.hasExpired()) {
            FileQueue queue;
            addTopLevelPath(at("w"), queue, store);
            caught = queue.count() > 0 && queue.count() < 300;
        }
        stop = true;
        user.join();
        QVERIFY(caught);
    }

    void pipesAndMissingTargets()
    {
        QVERIFY(QDir().mkdir(at("w")));
        QCOMPARE(::mkfifo(QFile::encodeName(at("w/pipe.css")).constData(), 0600), 0);
        QVERIFY(makeLink(u"nowhere"_s, at("w/dangling.js")));
        QCOMPARE(sorted(added(at("w"))), paths({"w/dangling.js", "w/pipe.css"}));
        QCOMPARE(added(at("w/pipe.css")), paths({"w/pipe.css"}));
    }

    void oddNames()
    {
        make({"w/new\nline.css", "w/qu'o\"te.css", "w/\xc3\xbc.css", "w/u\xcc\x88.css", "w/%1.css",
              "w/a b/c.js"});
        QCOMPARE(sorted(added(at("w"))), paths({"w/new\nline.css", "w/qu'o\"te.css", "w/\xc3\xbc.css",
                                                "w/u\xcc\x88.css", "w/%1.css", "w/a b/c.js"}));
    }

private:
    [[nodiscard]] QString at(const char *name) const { return m_folder->filePath(QString::fromUtf8(name)); }
    void make(std::initializer_list<const char *> files) const
    {
        for (const char *file : files) {
            QVERIFY(QDir().mkpath(QFileInfo(at(file)).path()));
            QVERIFY(writeFile(at(file), ""));
        }
    }
    [[nodiscard]] QStringList added(const QString &path) const
    {
        FileQueue queue;
        addTopLevelPath(path, queue, m_settings.store());
        return entriesOf(queue);
    }
    [[nodiscard]] static QStringList entriesOf(const FileQueue &queue)
    {
        const std::vector<QString> entries = queue.entries();
        return QStringList(entries.begin(), entries.end());
    }
    /// The names, below the folder, as full paths and sorted.
    [[nodiscard]] QStringList paths(std::initializer_list<const char *> names) const
    {
        QStringList list;
        for (const char *name : names)
            list << at(name);
        list.sort();
        return list;
    }
    [[nodiscard]] static QStringList sorted(QStringList list)
    {
        list.sort();
        return list;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QueueSettings m_settings;
};

BREVANT_TEST(tst_AddFiles, QCoreApplication)
#include "tst_AddFiles.moc"
