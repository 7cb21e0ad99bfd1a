// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "AppFixture.h"
#include "CountedJob.h"
#include "FoundOut.h"

#include "tests/Files.h"
#include "tests/TestClass.h"

#include <QDeadlineTimer>
#include <QFileDialog>
#include <QJsonDocument>
#include <QLineEdit>
#include <QRandomGenerator>
#include <QTest>

#include <atomic>
#include <map>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

namespace {

/// Where the outputs of a round go.
enum class Place { Beside, Elsewhere, Same };

} // namespace

/// Two jobs at once, again and again, while the user adds, removes, clears, selects, combines, previews and
/// changes settings, another program changes one too, and Results finds out more about the jobs before. It
/// lasts as many seconds as BREVANT_THREADS_SECONDS says, 3 if it is not set. Worth most under the thread
/// sanitizer.
class tst_RunsMeanwhile final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        // What Qt calls wrong of its objects and threads.
        QTest::failOnWarning(QRegularExpression(u"^Q"_s));
        m_app = std::make_unique<AppFixture>();
        m_app->tools.originals = {m_app->folder.filePath(u"originals"_s)};
        m_app->window.show();
        m_otherProgram = std::make_unique<SettingsStore>(m_app->folder.filePath(u"settings.json"_s));
        std::vector<QJsonValue> folders;
        for (const QString &name : {u"one"_s, u"two"_s}) {
            QDir(m_app->folder.path()).mkdir(name);
            folders.emplace_back(m_app->folder.filePath(name));
        }
        // A stand-in for esbuild: what is left of a source is shorter.
        m_app->tools.programs = u"" MODERN_PROGRAMS ""_s;
        const QString esbuild = m_app->folder.filePath(u"esbuild"_s);
        writeFile(esbuild, "#!/bin/sh\nexec tr -d x\n");
        QFile::setPermissions(esbuild, QFile::ReadOwner | QFile::ExeOwner);
        set(esbuildPathKeyString, esbuild);
        for (const SettingKey &setting : allSettingKeys) {
            if (setting.type == SettingType::Boolean)
                m_choices[setting.key] = {true, false};
        }
        m_choices.remove(autoMinifyCheckerKeyString); // there are to be two jobs
        for (const QLatin1StringView key :
             {lineBreakSwitcherKeyString, nomungeSwitcherKeyString, preserveSemiSwitcherKeyString,
              disableOptimizationsSwitcherKeyString})
            m_choices[key].emplace_back(1); // neither on nor off
        m_choices[suffixKeyString] = {u".min"_s, u"-x"_s, 7};
        m_choices[selectedFolderKeyString] = folders;
        m_choices[selectedEncodingKeyString] = {u"utf-8"_s, u"gbk"_s};
    }

    void everythingMeanwhile()
    {
        bool isNumber = false;
        const int seconds = qEnvironmentVariableIntValue("BREVANT_THREADS_SECONDS", &isNumber);
        const QDeadlineTimer end(std::chrono::seconds(isNumber ? seconds : 3));
        for (int round = 0; round < 6 || !end.hasExpired(); ++round) {
            const auto place = static_cast<Place>(round % 3);
            beginRound(place, round / 3 % 2 != 0);
            startJob();
            startJob();
            int seen = 0;
            while (m_app->jobs.isRunning() && !QTest::currentTestFailed()) {
                actLightly();
                if (const int worked = m_worked.load(std::memory_order_relaxed); worked > seen) {
                    ++seen;
                    act();
                }
                QCoreApplication::processEvents();
            }
            if (!QTest::currentTestFailed())
                endRound(place);
            if (!QTest::currentTestFailed())
                checkSettings();
            if (QTest::currentTestFailed()) {
                m_app->jobs.stopAndWait();
                return;
            }
        }
        QVERIFY(m_tally["results checked"_L1] > 0);
        QVERIFY(m_tally["reasons asked for"_L1] > 0);
        QString line;
        for (const auto &[what, count] : m_tally)
            line += u"%1 %2, "_s.arg(count).arg(what);
        qInfo().noquote() << line.chopped(2);
    }

private:
    /// The two settings that say whether an output is its source are decided for the whole round: between the
    /// readings of the one and the other a job might take an output for its source.
    void beginRound(Place place, bool isModernToo)
    {
        m_isModernToo = isModernToo;
        m_round = std::make_unique<QTemporaryDir>(m_app->folder.filePath(u"round-XXXXXX"_s));
        m_texts.clear();
        m_jobs.clear();
        m_worked = 0;
        m_choices[suffixSwitcherKeyString] = {place != Place::Same};
        m_choices[sameFolderKeyString] = {place != Place::Elsewhere};
        if (place == Place::Beside)
            m_choices[suffixSwitcherKeyString].emplace_back(1); // the output of the file before
        if (place == Place::Elsewhere)
            m_choices[suffixSwitcherKeyString].emplace_back(false);
        // The folder first: an output without one would go to the root.
        for (const QLatin1StringView key :
             {selectedFolderKeyString, suffixSwitcherKeyString, sameFolderKeyString})
            set(key, m_choices[key].front());
        m_choices[compressorsKeyString] = {u"classic"_s};
        if (isModernToo)
            m_choices[compressorsKeyString].emplace_back(u"modern"_s);
        set(compressorsKeyString, m_choices[compressorsKeyString].back());
        for (int i = 0; i < 5; ++i)
            addFiles();
        // Asked once more, the stubs that destroy their sources would do so without a safety copy.
        if (place == Place::Same)
            m_app->results.close();
        else
            m_app->results.show();
    }

    void startJob()
    {
        m_jobs.push_back(std::make_unique<CountedJob>(m_worked));
        m_app->jobs.detachNewThread(
            [this, job = m_jobs.back().get()](const std::atomic<Stop> &stop) { job->run(*m_app, stop); });
    }

    /// What costs little, as often as can be: two threads must come to the same place at the same moment.
    void actLightly()
    {
        const int row = below(60);
        switch (below(3)) {
        case 0:
            changeSetting();
            break;
        case 1:
            m_app->table->selectRowIndexes({row}, below(2) == 0);
            break;
        default:
            if (const std::optional<QString> entry = m_app->queue.entryAt(row))
                m_app->drop({*entry}); // is there already
        }
    }

    /// Once for each file that a job has been through, so that the jobs keep having some.
    void act()
    {
        const int what = below(100);
        if (what < 50)
            addFiles();
        else if (what < 75)
            removeRows();
        else if (what < 80)
            m_app->controller.selectAll();
        else if (what < 90)
            m_app->delegate.togglePreviewPanel();
        else if (what < 98)
            combineSome();
        else {
            m_app->controller.clear();
            ++m_tally["cleared"_L1];
        }
        checkQueue();
    }

    void addFiles()
    {
        if (m_texts.size() >= 60) // a round is to end
            return;
        const QString folder = u"d%1"_s.arg(m_files);
        QStringList paths{newFile(folder), newFile(folder), newFile(folder)};
        if (below(2) == 0)
            paths = {QFileInfo(paths.first()).path()};
        if (below(2) == 0)
            m_app->drop(paths);
        else
            m_app->delegate.applicationOpenFiles(paths);
        m_tally["files added"_L1] += 3;
    }

    void removeRows()
    {
        const int before = m_app->queue.count();
        if (before == 0)
            return;
        m_app->table->selectRowIndexes({below(before), below(before)}, below(2) == 0);
        m_app->controller.removeRow();
        m_tally["files removed"_L1] += before - m_app->queue.count();
    }

    void combineSome()
    {
        std::vector<int> rows;
        for (int row = 0; row < m_app->queue.count() && rows.size() < 3; ++row) {
            if (m_app->queue.entryAt(row)->endsWith(u".css"_s))
                rows.push_back(row);
        }
        if (rows.size() < 2)
            return;
        m_app->table->selectRowIndexes(rows, false);
        m_app->controller.combine();
        QDialog *const panel =
            m_app->window.findChild<QFileDialog *>(); // to combine more often than a user can
        QVERIFY(panel != nullptr);
        panel->findChild<QLineEdit *>(u"fileNameEdit"_s)
            ->setText(m_round->filePath(u"combined%1.css"_s.arg(++m_files)));
        panel->accept();
        delete panel;
        ++m_tally["combined"_L1];
    }

    void changeSetting()
    {
        if (below(8) == 0) {
            set(lineBreakKeyString, QString::number(below(1000)));
            return;
        }
        const QLatin1StringView key = anyOf(m_choices.keys());
        set(key, anyOf(m_choices[key]));
    }

    void set(QLatin1StringView key, const QJsonValue &value)
    {
        SettingsStore &store = key == lineBreakKeyString ? *m_otherProgram : m_app->settings;
        store.setObject(value, key);
        m_set.insert(key, value);
        ++m_tally["settings changed"_L1];
    }

    void checkQueue()
    {
        const std::vector<QString> entries = m_app->queue.entries();
        for (std::size_t row = 0; row < entries.size(); ++row)
            QCOMPARE(m_app->queue.indexOf(entries[row]), static_cast<int>(row));
        QCOMPARE(m_app->table->model()->rowCount(), static_cast<int>(entries.size()));
    }

    void endRound(Place place)
    {
        qsizetype worked = 0;
        for (const auto &job : m_jobs) {
            QCOMPARE(job->fault(), QString());
            worked += static_cast<qsizetype>(job->sources().size());
            ++m_tally["jobs"_L1];
            m_tally["files worked on"_L1] += static_cast<int>(job->sources().size());
        }
        if (!m_isModernToo && place != Place::Same) // else the next round interrupts it
            QTRY_VERIFY_WITH_TIMEOUT(isAllFoundOut(*m_app), 30'000);
        m_tally["results checked"_L1] += countOf(*m_app, isChecked);
        m_tally["reasons asked for"_L1] += countOf(*m_app, isExplained);
        const qsizetype javaCalls = callsOfJobs(*m_app).size() - m_javaCalls;
        m_javaCalls += javaCalls;
        m_tally["of them by modern compressors"_L1] += static_cast<int>(worked - javaCalls);
        QVERIFY(m_isModernToo ? javaCalls <= worked : javaCalls == worked);
        QVERIFY(!m_app->state().contains(u"MIXED"_s));
        for (const auto &[path, text] : m_texts) {
            const QByteArray now = readFile(path);
            if (now != text && !(place == Place::Same && isMinified(now, path, text)))
                QFAIL(qPrintable(u"%1 is \"%2\""_s.arg(path, QString::fromUtf8(now.left(60)))));
        }
        QCOMPARE(QDir(m_app->tools.originals.first()).entryList({u"*.original"_s}), QStringList());
        m_app->controller.clear();
    }

    bool isMinified(QByteArray now, const QString &path, QByteArray text) const
    {
        QByteArray classic = "minified " + path.toUtf8();
        if (!m_isModernToo)
            return now == classic;
        for (QByteArray *bytes : {&now, &classic, &text})
            *bytes = bytes->replace('x', QByteArray()).trimmed();
        return now == classic || now == text;
    }

    void checkSettings()
    {
        m_otherProgram->synchronize();
        m_app->settings.synchronize();
        const QByteArray file = readFile(m_app->folder.filePath(u"settings.json"_s));
        QCOMPARE(QJsonDocument::fromJson(file).object(), m_set);
        for (auto setting = m_set.begin(); setting != m_set.end(); ++setting) {
            const QByteArray key = setting.key().toLatin1();
            QCOMPARE(m_app->settings.objectForKey(QLatin1StringView(key)), setting.value());
        }
    }

    QString newFile(const QString &folder)
    {
        static constexpr const char *kinds[] = {"css", "js", "css", "html", "php"};
        static constexpr const char *modes[] = {"copy", "copy", "copy", "fail", "crash", "empty"};
        static constexpr const char *modesInPlace[] = {"slow",  "slow",   "slow",        "fail",    "crash",
                                                       "empty", "cut -9", "overwrite 1", "delete 0"};
        const bool inPlace = m_choices[suffixSwitcherKeyString].front() == false;
        const QString path = u"%1/%2/f%3.%4"_s.arg(m_round->path(), folder)
                                 .arg(++m_files)
                                 .arg(QString::fromUtf8(anyOf(kinds)));
        QDir(m_round->path()).mkpath(folder);
        m_texts[path] =
            QByteArray(inPlace ? anyOf(modesInPlace) : anyOf(modes)) + ' ' + QByteArray(below(5000), 'x');
        writeFile(path, m_texts[path]);
        return path;
    }

    int below(int bound) { return static_cast<int>(m_random.bounded(bound)); }
    template <typename List>
    auto anyOf(const List &list) -> decltype(list[0])
    {
        return list[static_cast<std::size_t>(below(static_cast<int>(std::size(list))))];
    }

    std::unique_ptr<AppFixture> m_app;
    std::unique_ptr<SettingsStore> m_otherProgram;
    std::unique_ptr<QTemporaryDir> m_round; ///< the files of this round
    std::atomic<int> m_worked = 0;          ///< files that jobs of this round have been through
    std::vector<std::unique_ptr<CountedJob>> m_jobs;
    std::map<QString, QByteArray> m_texts; ///< of the sources of this round
    QHash<QLatin1StringView, std::vector<QJsonValue>> m_choices;
    QJsonObject m_set; ///< what the settings file must hold
    QRandomGenerator m_random{1};
    bool m_isModernToo = false; ///< in this round
    qsizetype m_javaCalls = 0;
    int m_files = 0;
    std::map<QLatin1StringView, int> m_tally;
};

BREVANT_TEST(tst_RunsMeanwhile, QApplication)
#include "tst_RunsMeanwhile.moc"
