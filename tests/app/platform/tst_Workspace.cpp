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
            sendErrorReply(QStringLiteral("org.example.Refused"), QStringLiteral("not today"));
        else if (answer == Answer::None)
            setDelayedReply(true);
    }
};

class tst_Workspace final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void opensUrls();
    void asksTheFileManager();
    void addresses_data();
    void addresses();
    void relativePath();
    void folderIsOpened_data();
    void folderIsOpened();
    void doesNotWait();
    void slowAnswerIsWaitedFor();
    void busThatGoesAway();
    void unansweredWhenDestroyed();
    void oddFolderIsOpened();

private:
    void startFileManager(FileManager::Answer answer);
    [[nodiscard]] std::unique_ptr<Workspace> makeWorkspace(const QString &connection, bool opens = true);

    const QString m_file = QStringLiteral("/srv/site/a one.css");
    std::unique_ptr<PrivateBus> m_bus;
    std::unique_ptr<FileManager> m_manager;
    std::unique_ptr<Workspace> m_workspace;
    QList<QUrl> m_opened;
};

void tst_Workspace::init()
{
    m_bus = std::make_unique<PrivateBus>();
    QVERIFY2(!m_bus->address().isEmpty(), "dbus-daemon does not start");
    QVERIFY(QDBusConnection::connectToBus(m_bus->address(), QStringLiteral("own")).isConnected());
    m_opened.clear();
    m_workspace = makeWorkspace(QStringLiteral("own"));
}

void tst_Workspace::cleanup()
{
    m_workspace.reset();
    m_manager.reset();
    QDBusConnection::disconnectFromBus(QStringLiteral("own"));
    QDBusConnection::disconnectFromBus(QStringLiteral("manager"));
}

void tst_Workspace::startFileManager(FileManager::Answer answer)
{
    m_manager = std::make_unique<FileManager>();
    m_manager->answer = answer;
    auto bus = QDBusConnection::connectToBus(m_bus->address(), QStringLiteral("manager"));
    QVERIFY(bus.registerObject(QStringLiteral("/org/freedesktop/FileManager1"), m_manager.get(),
                               QDBusConnection::ExportAllSlots));
    QVERIFY(bus.registerService(QStringLiteral("org.freedesktop.FileManager1")));
}

std::unique_ptr<Workspace> tst_Workspace::makeWorkspace(const QString &connection, bool opens)
{
    return std::make_unique<Workspace>(QDBusConnection(connection), [this, opens](const QUrl &url) {
        m_opened.append(url);
        return opens;
    });
}

void tst_Workspace::opensUrls()
{
    const QUrl url(QStringLiteral("https://brevant.example/"));
    QVERIFY(m_workspace->openUrl(url));
    QVERIFY(!makeWorkspace(QStringLiteral("own"), false)->openUrl(url));
    QCOMPARE(m_opened, QList<QUrl>({url, url}));
}

void tst_Workspace::asksTheFileManager()
{
    startFileManager(FileManager::Answer::Done);
    m_workspace->selectFile(m_file);
    QTRY_COMPARE(m_manager->asked.size(), 1);
    const QDBusMessage message = m_manager->asked.constFirst();
    QCOMPARE(message.signature(), QStringLiteral("ass"));
    QCOMPARE(message.arguments(),
             QVariantList({QStringList{QStringLiteral("file:///srv/site/a%20one.css")}, QString()}));

    // The answer to a second question comes after that to the first.
    m_workspace->selectFile(m_file);
    QTRY_COMPARE(m_manager->asked.size(), 2);
    QTest::qWait(50);
    QCOMPARE(m_opened, QList<QUrl>());
}

void tst_Workspace::addresses_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("address");
    const auto row = [](const char *name, const QString &path, const char *address) {
        QTest::newRow(name) << path << QString::fromLatin1(address);
    };
    row("plain", QStringLiteral("/a/b-c_d.e~f.css"), "file:///a/b-c_d.e~f.css");
    row("blanks", QStringLiteral("/a b/ c .css"), "file:///a%20b/%20c%20.css");
    row("percent", QStringLiteral("/100%/a%20b.css"), "file:///100%25/a%2520b.css");
    row("number sign", QStringLiteral("/c#/a#1.css"), "file:///c%23/a%231.css");
    row("question mark", QStringLiteral("/what?.css"), "file:///what%3F.css");
    row("umlaut", QStringLiteral("/Gr\u00f6\u00dfe.css"), "file:///Gr%C3%B6%C3%9Fe.css");
    row("separate accent", QStringLiteral("/u\u0308.css"), "file:///u%CC%88.css");
    row("beyond the plane", QStringLiteral("/\U0001f600.css"), "file:///%F0%9F%98%80.css");
    row("line end", QStringLiteral("/a\nb\r.css"), "file:///a%0Ab%0D.css");
    row("backslash", QStringLiteral("/a\\b.css"), "file:///a%5Cb.css");
    row("colon", QStringLiteral("/c:/a:1.css"), "file:///c%3A/a%3A1.css");
    row("marks", QStringLiteral("/[{(<\"'`^|;,&=+$!*@>)}].css"),
        "file:///%5B%7B%28%3C%22%27%60%5E%7C%3B%2C%26%3D%2B%24%21%2A%40%3E%29%7D%5D.css");
    row("folder of the parent", QStringLiteral("/a/../b.css"), "file:///a/../b.css");
    row("two slashes are no host", QStringLiteral("//srv/a.css"), "file:////srv/a.css");
}

void tst_Workspace::addresses()
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

void tst_Workspace::relativePath()
{
    QCOMPARE(fileUrl(QStringLiteral("a b.css")).toLocalFile(),
             QDir::currentPath() + QStringLiteral("/a b.css"));
}

void tst_Workspace::folderIsOpened_data()
{
    QTest::addColumn<QString>("connection");
    QTest::addColumn<bool>("manager");
    QTest::addColumn<FileManager::Answer>("answer");
    QTest::newRow("no bus") << QStringLiteral("none") << false << FileManager::Answer::Done;
    QTest::newRow("no file manager") << QStringLiteral("own") << false << FileManager::Answer::Done;
    QTest::newRow("refused") << QStringLiteral("own") << true << FileManager::Answer::Refusal;
    QTest::newRow("no answer") << QStringLiteral("own") << true << FileManager::Answer::None;
}

void tst_Workspace::folderIsOpened()
{
    QFETCH(const QString, connection);
    QFETCH(const bool, manager);
    QFETCH(const FileManager::Answer, answer);
    if (manager)
        startFileManager(answer);
    const auto workspace = makeWorkspace(connection);
    workspace->setAnswerTimeout(std::chrono::milliseconds(200));
    workspace->selectFile(m_file);
    QTRY_COMPARE(m_opened, QList<QUrl>{QUrl(QStringLiteral("file:///srv/site"))});
    QCOMPARE(m_manager ? m_manager->asked.size() : 0, manager ? 1 : 0);
    QTest::qWait(50);
    QCOMPARE(m_opened.size(), 1);
}

void tst_Workspace::doesNotWait()
{
    // The file manager is on this thread and could not answer: a call that waits gives up, and opens the
    // folder.
    startFileManager(FileManager::Answer::Done);
    m_workspace->selectFile(m_file);
    QCOMPARE(m_opened, QList<QUrl>());
    QCOMPARE(m_manager->asked.size(), 0);
    QTRY_COMPARE(m_manager->asked.size(), 1);
}

void tst_Workspace::slowAnswerIsWaitedFor()
{
    startFileManager(FileManager::Answer::None);
    m_workspace->selectFile(m_file);
    QTRY_COMPARE(m_manager->asked.size(), 1);
    QTest::qWait(600);
    QCOMPARE(m_opened, QList<QUrl>());
    QDBusConnection(QStringLiteral("manager")).send(m_manager->asked.constFirst().createReply());
    QTest::qWait(100);
    QCOMPARE(m_opened, QList<QUrl>());
}

void tst_Workspace::busThatGoesAway()
{
    startFileManager(FileManager::Answer::None);
    m_workspace->selectFile(m_file);
    QTRY_COMPARE(m_manager->asked.size(), 1);
    m_bus->end();
    QTRY_COMPARE(m_opened.size(), 1);
    m_workspace->selectFile(m_file);
    QTRY_COMPARE(m_opened.size(), 2);
}

void tst_Workspace::unansweredWhenDestroyed()
{
    startFileManager(FileManager::Answer::None);
    m_workspace->selectFile(m_file);
    QTRY_COMPARE(m_manager->asked.size(), 1);
    m_workspace.reset();
    QDBusConnection(QStringLiteral("manager"))
        .send(m_manager->asked.constFirst().createErrorReply(QDBusError::Failed, QString()));
    QTest::qWait(50);
    QCOMPARE(m_opened, QList<QUrl>());
}

void tst_Workspace::oddFolderIsOpened()
{
    makeWorkspace(QStringLiteral("none"))->selectFile(QStringLiteral("/50% of\n#1/a.css"));
    QCOMPARE(m_opened.size(), 1);
    QCOMPARE(m_opened.constFirst().toEncoded(), QByteArray("file:///50%25%20of%0A%231"));
    makeWorkspace(QStringLiteral("none"))->selectFile(QStringLiteral("/a.css"));
    QCOMPARE(m_opened.constLast().toEncoded(), QByteArray("file:///"));
}

BREVANT_TEST(tst_Workspace, QCoreApplication)
#include "tst_Workspace.moc"
