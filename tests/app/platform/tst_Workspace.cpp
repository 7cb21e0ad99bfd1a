// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/Workspace.h"
#include "tests/TestClass.h"
#include "tests/app/platform/PrivateBus.h"

#include <QDBusContext>
#include <QDBusError>
#include <QDBusMessage>
#include <QDir>
#include <QTest>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

/// A file manager that notes what it is asked and answers as it is told.
class FileManager final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")

public:
    enum class Answer { Done, Refusal, None };

    Answer answer = Answer::Done;
    QList<QDBusMessage> asked;

public Q_SLOTS:
    void ShowItems([[maybe_unused]] const QStringList &uris, [[maybe_unused]] const QString &startupId)
    {
        asked.append(message());
        if (answer == Answer::Refusal)
            sendErrorReply(u"org.example.Refused"_s, u"not today"_s);
        else if (answer == Answer::None)
            setDelayedReply(true);
    }
};

class tst_Workspace final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_bus = std::make_unique<PrivateBus>();
        QVERIFY2(!m_bus->address().isEmpty(), "dbus-daemon does not start");
        QVERIFY(QDBusConnection::connectToBus(m_bus->address(), u"own"_s).isConnected());
        m_opened.clear();
        m_workspace = makeWorkspace(u"own"_s);
    }

    void cleanup()
    {
        m_workspace.reset();
        m_manager.reset();
        QDBusConnection::disconnectFromBus(u"own"_s);
        QDBusConnection::disconnectFromBus(u"manager"_s);
    }

    void opensUrls()
    {
        const QUrl url(u"https://brevant.example/"_s);
        QVERIFY(m_workspace->openUrl(url));
        QVERIFY(!makeWorkspace(u"own"_s, false)->openUrl(url));
        QCOMPARE(m_opened, QList<QUrl>({url, url}));
    }

    void asksTheFileManager()
    {
        startFileManager(FileManager::Answer::Done);
        m_workspace->selectFile(m_file);
        QTRY_COMPARE(m_manager->asked.size(), 1);
        const QDBusMessage message = m_manager->asked.constFirst();
        QCOMPARE(message.signature(), u"ass"_s);
        QCOMPARE(message.arguments(),
                 QVariantList({QStringList{u"file:///srv/site/a%20one.css"_s}, QString()}));

        // The answer to a second question comes after that to the first.
        m_workspace->selectFile(m_file);
        QTRY_COMPARE(m_manager->asked.size(), 2);
        QTest::qWait(50);
        QCOMPARE(m_opened, QList<QUrl>());
    }

    void addresses_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("address");
        const auto row = [](const char *name, const QString &path, const char *address) {
            QTest::newRow(name) << path << QString::fromLatin1(address);
        };
        row("plain", u"/a/b-c_d.e~f.css"_s, "file:///a/b-c_d.e~f.css");
        row("blanks", u"/a b/ c .css"_s, "file:///a%20b/%20c%20.css");
        row("percent", u"/100%/a%20b.css"_s, "file:///100%25/a%2520b.css");
        row("number sign", u"/c#/a#1.css"_s, "file:///c%23/a%231.css");
        row("question mark", u"/what?.css"_s, "file:///what%3F.css");
        row("umlaut", u"/Gr\u00f6\u00dfe.css"_s, "file:///Gr%C3%B6%C3%9Fe.css");
        row("separate accent", u"/u\u0308.css"_s, "file:///u%CC%88.css");
        row("beyond the plane", u"/\U0001f600.css"_s, "file:///%F0%9F%98%80.css");
        row("line end", u"/a\nb\r.css"_s, "file:///a%0Ab%0D.css");
        row("backslash", u"/a\\b.css"_s, "file:///a%5Cb.css");
        row("colon", u"/c:/a:1.css"_s, "file:///c%3A/a%3A1.css");
        row("marks", u"/[{(<\"'`^|;,&=+$!*@>)}].css"_s,
            "file:///%5B%7B%28%3C%22%27%60%5E%7C%3B%2C%26%3D%2B%24%21%2A%40%3E%29%7D%5D.css");
        row("folder of the parent", u"/a/../b.css"_s, "file:///a/../b.css");
        row("two slashes are no host", u"//srv/a.css"_s, "file:////srv/a.css");
    }

    void addresses()
    {
        QFETCH(const QString, path);
        QFETCH(const QString, address);
        QCOMPARE(fileUrl(path).toString(QUrl::FullyEncoded), address);
        QCOMPARE(fileUrl(path).toLocalFile(), path);

        startFileManager(FileManager::Answer::Done);
        m_workspace->selectFile(path);
        QTRY_COMPARE(m_manager->asked.size(), 1);
        QCOMPARE(m_manager->asked.constFirst().arguments().constFirst().toStringList(), QStringList{address});
    }

    void relativePath()
    {
        QCOMPARE(fileUrl(u"a b.css"_s).toLocalFile(), QDir::currentPath() + u"/a b.css"_s);
    }

    void folderIsOpened_data()
    {
        QTest::addColumn<QString>("connection");
        QTest::addColumn<bool>("manager");
        QTest::addColumn<FileManager::Answer>("answer");
        QTest::newRow("no bus") << u"none"_s << false << FileManager::Answer::Done;
        QTest::newRow("no file manager") << u"own"_s << false << FileManager::Answer::Done;
        QTest::newRow("refused") << u"own"_s << true << FileManager::Answer::Refusal;
        QTest::newRow("no answer") << u"own"_s << true << FileManager::Answer::None;
    }

    void folderIsOpened()
    {
        QFETCH(const QString, connection);
        QFETCH(const bool, manager);
        QFETCH(const FileManager::Answer, answer);
        if (manager)
            startFileManager(answer);
        const auto workspace = makeWorkspace(connection);
        workspace->setAnswerTimeout(std::chrono::milliseconds(200));
        workspace->selectFile(m_file);
        QTRY_COMPARE(m_opened, QList<QUrl>{QUrl(u"file:///srv/site"_s)});
        QCOMPARE(m_manager ? m_manager->asked.size() : 0, manager ? 1 : 0);
        QTest::qWait(50);
        QCOMPARE(m_opened.size(), 1);
    }

    void doesNotWait()
    {
        // The file manager is on this thread and could not answer: a call that waits gives up, and opens the
        // folder.
        startFileManager(FileManager::Answer::Done);
        m_workspace->selectFile(m_file);
        QCOMPARE(m_opened, QList<QUrl>());
        QCOMPARE(m_manager->asked.size(), 0);
        QTRY_COMPARE(m_manager->asked.size(), 1);
    }

    void slowAnswerIsWaitedFor()
    {
        startFileManager(FileManager::Answer::None);
        m_workspace->selectFile(m_file);
        QTRY_COMPARE(m_manager->asked.size(), 1);
        QTest::qWait(600);
        QCOMPARE(m_opened, QList<QUrl>());
        QDBusConnection(u"manager"_s).send(m_manager->asked.constFirst().createReply());
        QTest::qWait(100);
        QCOMPARE(m_opened, QList<QUrl>());
    }

    void busThatGoesAway()
    {
        startFileManager(FileManager::Answer::None);
        m_workspace->selectFile(m_file);
        QTRY_COMPARE(m_manager->asked.size(), 1);
        m_bus->end();
        QTRY_COMPARE(m_opened.size(), 1);
        m_workspace->selectFile(m_file);
        QTRY_COMPARE(m_opened.size(), 2);
    }

    void unansweredWhenDestroyed()
    {
        startFileManager(FileManager::Answer::None);
        m_workspace->selectFile(m_file);
        QTRY_COMPARE(m_manager->asked.size(), 1);
        m_workspace.reset();
        QDBusConnection(u"manager"_s)
            .send(m_manager->asked.constFirst().createErrorReply(QDBusError::Failed, QString()));
        QTest::qWait(50);
        QCOMPARE(m_opened, QList<QUrl>());
    }

    void oddFolderIsOpened()
    {
        makeWorkspace(u"none"_s)->selectFile(u"/50% of\n#1/a.css"_s);
        QCOMPARE(m_opened.size(), 1);
        QCOMPARE(m_opened.constFirst().toEncoded(), QByteArray("file:///50%25%20of%0A%231"));
        makeWorkspace(u"none"_s)->selectFile(u"/a.css"_s);
        QCOMPARE(m_opened.constLast().toEncoded(), QByteArray("file:///"));
    }

private:
    void startFileManager(FileManager::Answer answer)
    {
        m_manager = std::make_unique<FileManager>();
        m_manager->answer = answer;
        auto bus = QDBusConnection::connectToBus(m_bus->address(), u"manager"_s);
        QVERIFY(bus.registerObject(u"/org/freedesktop/FileManager1"_s, m_manager.get(),
                                   QDBusConnection::ExportAllSlots));
        QVERIFY(bus.registerService(u"org.freedesktop.FileManager1"_s));
    }

    [[nodiscard]] std::unique_ptr<Workspace> makeWorkspace(const QString &connection, bool opens = true)
    {
        return std::make_unique<Workspace>(QDBusConnection(connection), [this, opens](const QUrl &url) {
            m_opened.append(url);
            return opens;
        });
    }

    const QString m_file = u"/srv/site/a one.css"_s;
    std::unique_ptr<PrivateBus> m_bus;
    std::unique_ptr<FileManager> m_manager;
    std::unique_ptr<Workspace> m_workspace;
    QList<QUrl> m_opened;
};

BREVANT_TEST(tst_Workspace, QCoreApplication)
#include "tst_Workspace.moc"
