// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "queue/view/OpenPanel.h"

#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"
#include "tests/TestClass.h"

#include <QAction>
#include <QApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QTreeView>

using namespace brevant;

namespace {

const QStringList cssAndJs{QStringLiteral("css"), QStringLiteral("js")};

/// What the list shows once it is whole and sorted. Before that, files come and go, in the folder's own
/// order.
const QStringList allShown{QStringLiteral("old"),   QStringLiteral("site"), QStringLiteral("a.css"),
                           QStringLiteral("B.CSS"), QStringLiteral("c.js"), QStringLiteral("two words.css")};

/// The parts of a panel that the user sees.
struct Parts {
    explicit Parts(OpenPanel &panel)
        : list(*panel.findChild<QListView *>(QStringLiteral("listView"))),
          nameEdit(*panel.findChild<QLineEdit *>(QStringLiteral("fileNameEdit")))
    {
        const auto *box = panel.findChild<QDialogButtonBox *>(QStringLiteral("buttonBox"));
        for (QAbstractButton *button : box->buttons()) {
            if (box->buttonRole(button) == QDialogButtonBox::AcceptRole)
                accepting += button;
        }
    }

    [[nodiscard]] QStringList shownNames() const
    {
        QStringList names;
        for (int row = 0; row < list.model()->rowCount(list.rootIndex()); ++row)
            names += list.model()->index(row, 0, list.rootIndex()).data().toString();
        return names;
    }

    [[nodiscard]] QModelIndex indexOf(const QString &name) const
    {
        for (int row = 0; row < list.model()->rowCount(list.rootIndex()); ++row) {
            const QModelIndex index = list.model()->index(row, 0, list.rootIndex());
            if (index.data().toString() == name)
                return index;
        }
        return {};
    }

    void select(const QString &name) const
    {
        list.selectionModel()->select(indexOf(name), QItemSelectionModel::Select | QItemSelectionModel::Rows);
    }

    void type(const QString &text) const
    {
        nameEdit.setFocus();
        nameEdit.selectAll();
        QTest::keyClicks(&nameEdit, text);
    }

    [[nodiscard]] QAbstractButton &choose() const { return *accepting.first(); }

    QListView &list;
    QLineEdit &nameEdit;
    QList<QAbstractButton *> accepting;
};

} // namespace

class tst_OpenPanel : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void allowedTypes_data();
    void allowedTypes();
    void titleAndButton();
    void showsFoldersAndAllowedFiles();
    void hiddenFilesCanBeShown();
    void filesAndFoldersTogether();
    void aFolderIsChosenNotEntered();
    void aFolderThatWasEnteredCanBeChosen();
    void columnsAreWideEnough_data();
    void columnsAreWideEnough();
    void sizesAreThoseOfThePreview();
    void typedNames_data();
    void typedNames();
    void typedNameReplacesTheSelection();
    void cancelAnswersNothing();
    void beginsWhereItEnded();

private:
    [[nodiscard]] QString at(const QString &name) const { return m_folder.filePath(name); }

    QTemporaryDir m_folder;
};

void tst_OpenPanel::initTestCase()
{
    QVERIFY(m_folder.isValid());
    for (const char *name :
         {"a.css", "B.CSS", "c.js", "d.html", "notes.txt", ".hidden.css", "two words.css"}) {
        QFile file(at(QLatin1StringView(name)));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    QVERIFY(QDir(m_folder.path()).mkpath(QStringLiteral("site/deep")));
    QVERIFY(QDir(m_folder.path()).mkpath(QStringLiteral("old")));
    QVERIFY(QFile::link(QStringLiteral("deep"), at(QStringLiteral("site/link"))));
}

void tst_OpenPanel::allowedTypes_data()
{
    QTest::addColumn<bool>("html");
    QTest::addColumn<bool>("php");
    QTest::addColumn<QString>("expected");
    QTest::newRow("both") << true << true << QStringLiteral("css js html phtml php");
    QTest::newRow("html") << true << false << QStringLiteral("css js html");
    QTest::newRow("php") << false << true << QStringLiteral("css js phtml php");
    QTest::newRow("neither") << false << false << QStringLiteral("css js");
}

void tst_OpenPanel::allowedTypes()
{
    QFETCH(const bool, html);
    QFETCH(const bool, php);
    QFETCH(const QString, expected);
    SettingsStore settings(at(QStringLiteral("settings.json")));
    settings.setOverride(html, enableHTMLCheckerKeyString);
    settings.setOverride(php, enablePHPCheckerKeyString);
    QCOMPARE(allowedFileTypes(settings).join(u' '), expected);
}

void tst_OpenPanel::titleAndButton()
{
    OpenPanel panel(cssAndJs);
    panel.show();
    const Parts parts(panel);
    QCOMPARE(panel.windowTitle(), QStringLiteral("Choose Files or Folders"));
    QCOMPARE(parts.accepting.size(), 1);
    QCOMPARE(parts.choose().text(), QStringLiteral("Choose"));
    QVERIFY(!parts.choose().isEnabled());
}

void tst_OpenPanel::showsFoldersAndAllowedFiles()
{
    OpenPanel panel(cssAndJs);
    panel.setDirectory(m_folder.path());
    panel.show();
    const Parts parts(panel);
    QTRY_COMPARE(parts.shownNames(), allShown);
}

void tst_OpenPanel::hiddenFilesCanBeShown()
{
    OpenPanel panel(cssAndJs);
    panel.setDirectory(m_folder.path());
    panel.show();
    const Parts parts(panel);
    QTRY_COMPARE(parts.shownNames(), allShown);
    QTest::keyClick(&panel, Qt::Key_H, Qt::ControlModifier);
    QTRY_VERIFY(parts.shownNames().contains(QStringLiteral(".hidden.css")));
    QTest::keyClick(&panel, Qt::Key_H, Qt::ControlModifier);
    QTRY_COMPARE(parts.shownNames(), allShown);
}

void tst_OpenPanel::filesAndFoldersTogether()
{
    OpenPanel panel(cssAndJs);
    panel.setDirectory(m_folder.path());
    panel.show();
    const Parts parts(panel);
    QTRY_COMPARE(parts.shownNames(), allShown);
    parts.select(QStringLiteral("c.js"));
    parts.select(QStringLiteral("site"));
    parts.select(QStringLiteral("a.css"));
    QVERIFY(parts.choose().isEnabled());
    // In the order of the list: folders first.
    const QStringList expected{at(QStringLiteral("site")), at(QStringLiteral("a.css")),
                               at(QStringLiteral("c.js"))};
    QCOMPARE(panel.chosenPaths(), expected);
    QTest::mouseClick(&parts.choose(), Qt::LeftButton);
    QCOMPARE(panel.result(), int(QDialog::Accepted));
    QCOMPARE(panel.chosenPaths(), expected);
}

void tst_OpenPanel::aFolderIsChosenNotEntered()
{
    OpenPanel panel(cssAndJs);
    panel.setDirectory(m_folder.path());
    panel.show();
    const Parts parts(panel);
    QTRY_COMPARE(parts.shownNames(), allShown);
    parts.select(QStringLiteral("site"));
    QCOMPARE(parts.choose().text(), QStringLiteral("Choose"));
    QTest::mouseClick(&parts.choose(), Qt::LeftButton);
    QVERIFY(!panel.isVisible());
    QCOMPARE(panel.chosenPaths(), QStringList{at(QStringLiteral("site"))});
}

void tst_OpenPanel::aFolderThatWasEnteredCanBeChosen()
{
    OpenPanel panel(cssAndJs);
    panel.setDirectory(m_folder.path());
    panel.show();
    const Parts parts(panel);
    QTRY_COMPARE(parts.shownNames(), allShown);
    auto *const tree = panel.findChild<QTreeView *>(QStringLiteral("treeView"));
    Q_EMIT tree->activated(parts.indexOf(QStringLiteral("site"))); // as a double click, or Return, does
    QCOMPARE(panel.directory().absolutePath(), at(QStringLiteral("site")));
    QTRY_COMPARE(parts.shownNames(), QStringList({QStringLiteral("deep"), QStringLiteral("link")}));
    QVERIFY(parts.choose().isEnabled());
    QCOMPARE(panel.chosenPaths(), QStringList{at(QStringLiteral("site"))});
    parts.select(QStringLiteral("deep"));
    QCOMPARE(panel.chosenPaths(), QStringList{at(QStringLiteral("site/deep"))});
    parts.type(QStringLiteral("none"));
    QVERIFY(!parts.choose().isEnabled());
}

void tst_OpenPanel::columnsAreWideEnough_data()
{
    QTest::addColumn<int>("points");
    for (const int points : {8, 10, 16, 24})
        QTest::addRow("%d points", points) << points;
}

void tst_OpenPanel::columnsAreWideEnough()
{
    QFETCH(const int, points);
    const QFont before = QApplication::font();
    QFont font = before;
    font.setPointSize(points);
    QApplication::setFont(font);
    {
        OpenPanel panel(cssAndJs);
        panel.setDirectory(m_folder.path());
        panel.show();
        const Parts parts(panel);
        QTRY_COMPARE(parts.shownNames(), allShown);
        auto *const tree = panel.findChild<QTreeView *>(QStringLiteral("treeView"));
        const auto wanted = [tree](int column) {
            int width = 0;
            for (int row = 0; row < tree->model()->rowCount(tree->rootIndex()); ++row) {
                const QString text = tree->model()->index(row, column, tree->rootIndex()).data().toString();
                width = std::max(width, tree->fontMetrics().horizontalAdvance(text));
            }
            return width;
        };
        for (const int column : {1, 2, 3})
            QTRY_VERIFY2(wanted(column) > 0 && tree->columnWidth(column) >= wanted(column),
                         qPrintable(QStringLiteral("column %1").arg(column)));
        QTRY_VERIFY(tree->columnWidth(0) >= tree->fontMetrics().horizontalAdvance(u'w') * 20);
    }
    QApplication::setFont(before);
}

void tst_OpenPanel::sizesAreThoseOfThePreview()
{
    QFile file(at(QStringLiteral("c.js")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(12345, ' '));
    file.close();
    OpenPanel panel(cssAndJs);
    panel.setDirectory(m_folder.path());
    panel.show();
    const Parts parts(panel);
    QTRY_COMPARE(parts.shownNames(), allShown);
    QTRY_COMPARE(parts.indexOf(QStringLiteral("c.js")).siblingAtColumn(1).data().toString(),
                 QStringLiteral("12.3 kB"));
    QCOMPARE(parts.indexOf(QStringLiteral("site")).siblingAtColumn(1).data().toString(), QString());
}

void tst_OpenPanel::typedNames_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QStringList>("names");
    QTest::newRow("a file") << QStringLiteral("a.css") << QStringList{QStringLiteral("a.css")};
    QTest::newRow("a hidden one") << QStringLiteral(".hidden.css")
                                  << QStringList{QStringLiteral(".hidden.css")};
    QTest::newRow("a folder below") << QStringLiteral("site/deep")
                                    << QStringList{QStringLiteral("site/deep")};
    QTest::newRow("a link to a folder")
        << QStringLiteral("site/link") << QStringList{QStringLiteral("site/link")};
    QTest::newRow("with a blank") << QStringLiteral("two words.css")
                                  << QStringList{QStringLiteral("two words.css")};
    QTest::newRow("two") << QStringLiteral("\"a.css\" \"c.js\"")
                         << QStringList{QStringLiteral("a.css"), QStringLiteral("c.js")};
    QTest::newRow("not there") << QStringLiteral("none.css") << QStringList();
    QTest::newRow("not allowed") << QStringLiteral("notes.txt") << QStringList();
    QTest::newRow("nothing") << QStringLiteral(" ") << QStringList();
}

void tst_OpenPanel::typedNames()
{
    QFETCH(const QString, typed);
    QFETCH(const QStringList, names);
    OpenPanel panel(cssAndJs);
    panel.setDirectory(m_folder.path());
    panel.show();
    const Parts parts(panel);
    QTRY_COMPARE(parts.shownNames(), allShown);
    parts.type(typed);
    QStringList paths;
    for (const QString &name : names)
        paths += at(name);
    QCOMPARE(panel.chosenPaths(), paths);
    QCOMPARE(parts.choose().isEnabled(), !names.isEmpty());
}

void tst_OpenPanel::typedNameReplacesTheSelection()
{
    OpenPanel panel(cssAndJs);
    panel.setDirectory(m_folder.path());
    panel.show();
    const Parts parts(panel);
    QTRY_COMPARE(parts.shownNames(), allShown);
    parts.select(QStringLiteral("site"));
    parts.type(QStringLiteral("c.js"));
    QCOMPARE(panel.chosenPaths(), QStringList{at(QStringLiteral("c.js"))});
    parts.type(QStringLiteral("none"));
    QVERIFY(!parts.choose().isEnabled());
    panel.accept();
    QVERIFY(panel.isVisible());
}

void tst_OpenPanel::cancelAnswersNothing()
{
    QTimer::singleShot(0, [] { qobject_cast<QDialog *>(QApplication::activeModalWidget())->reject(); });
    QVERIFY(!OpenPanel::run(nullptr, cssAndJs).has_value());
}

void tst_OpenPanel::beginsWhereItEnded()
{
    const auto whileRunning = [](const std::function<void(OpenPanel &)> &act) {
        QTimer::singleShot(0, [act] { act(*qobject_cast<OpenPanel *>(QApplication::activeModalWidget())); });
    };
    whileRunning([this](OpenPanel &panel) {
        panel.setDirectory(m_folder.path());
        const Parts parts(panel);
        parts.type(QStringLiteral("c.js"));
        QTest::mouseClick(&parts.choose(), Qt::LeftButton);
        if (panel.isVisible())
            panel.reject();
    });
    const std::optional<QStringList> chosen = OpenPanel::run(nullptr, cssAndJs);
    QVERIFY(chosen.has_value());
    QCOMPARE(*chosen, QStringList{at(QStringLiteral("c.js"))});
    QString folder;
    whileRunning([&folder](OpenPanel &panel) {
        folder = panel.directory().absolutePath();
        panel.reject();
    });
    QVERIFY(!OpenPanel::run(nullptr, cssAndJs).has_value());
    QCOMPARE(folder, m_folder.path());
}

BREVANT_TEST(tst_OpenPanel, QApplication)
#include "tst_OpenPanel.moc"
