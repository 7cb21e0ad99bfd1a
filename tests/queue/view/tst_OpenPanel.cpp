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
using namespace Qt::StringLiterals;

namespace {

const QStringList cssAndJs{u"css"_s, u"js"_s};

/// What the list shows once it is loaded and sorted. Before that, files come and go in the folder's own
/// order.
const QStringList allShown{u"old"_s, u"site"_s, u"a.css"_s, u"B.CSS"_s, u"c.js"_s, u"two words.css"_s};

/// The parts of a panel that the user sees.
struct Parts {
    explicit Parts(OpenPanel &panel)
        : list(*panel.findChild<QListView *>(u"listView"_s)),
          nameEdit(*panel.findChild<QLineEdit *>(u"fileNameEdit"_s))
    {
        const auto *box = panel.findChild<QDialogButtonBox *>(u"buttonBox"_s);
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

/// A panel that shows all of `folder`.
struct Opened {
    explicit Opened(const QString &folder)
    {
        panel.setDirectory(folder);
        panel.show();
        QTRY_COMPARE(parts.shownNames(), allShown);
    }

    OpenPanel panel{cssAndJs};
    Parts parts{panel};
};

} // namespace

class tst_OpenPanel : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_folder.isValid());
        for (const char *name :
             {"a.css", "B.CSS", "c.js", "d.html", "notes.txt", ".hidden.css", "two words.css"}) {
            QFile file(at(QLatin1StringView(name)));
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
        QVERIFY(QDir(m_folder.path()).mkpath(u"site/deep"_s));
        QVERIFY(QDir(m_folder.path()).mkpath(u"old"_s));
        QVERIFY(QFile::link(u"deep"_s, at(u"site/link"_s)));
    }

    void allowedTypes_data()
    {
        QTest::addColumn<bool>("html");
        QTest::addColumn<bool>("php");
        QTest::addColumn<QString>("expected");
        QTest::newRow("both") << true << true << u"css js html phtml php"_s;
        QTest::newRow("html") << true << false << u"css js html"_s;
        QTest::newRow("php") << false << true << u"css js phtml php"_s;
        QTest::newRow("neither") << false << false << u"css js"_s;
    }

    void allowedTypes()
    {
        QFETCH(const bool, html);
        QFETCH(const bool, php);
        QFETCH(const QString, expected);
        SettingsStore settings(at(u"settings.json"_s));
        settings.setOverride(html, enableHTMLCheckerKeyString);
        settings.setOverride(php, enablePHPCheckerKeyString);
        QCOMPARE(allowedFileTypes(settings).join(u' '), expected);
    }

    void titleAndButton()
    {
        OpenPanel panel(cssAndJs);
        panel.show();
        const Parts parts(panel);
        QCOMPARE(panel.windowTitle(), u"Choose Files or Folders"_s);
        QCOMPARE(parts.accepting.size(), 1);
        QCOMPARE(parts.choose().text(), u"Choose"_s);
        QVERIFY(!parts.choose().isEnabled());
    }

    void showsFoldersAndAllowedFiles()
    {
        const Opened opened(m_folder.path());
        QCOMPARE(opened.parts.shownNames(), allShown);
    }

    void hiddenFilesCanBeShown()
    {
        Opened opened(m_folder.path());
        auto &[panel, parts] = opened;
        QTest::keyClick(&panel, Qt::Key_H, Qt::ControlModifier);
        QTRY_VERIFY(parts.shownNames().contains(u".hidden.css"_s));
        QTest::keyClick(&panel, Qt::Key_H, Qt::ControlModifier);
        QTRY_COMPARE(parts.shownNames(), allShown);
    }

    void filesAndFoldersTogether()
    {
        Opened opened(m_folder.path());
        auto &[panel, parts] = opened;
        parts.select(u"c.js"_s);
        parts.select(u"site"_s);
        parts.select(u"a.css"_s);
        QVERIFY(parts.choose().isEnabled());
        // In the order of the list: folders first.
        const QStringList expected{at(u"site"_s), at(u"a.css"_s), at(u"c.js"_s)};
        QCOMPARE(panel.chosenPaths(), expected);
        QTest::mouseClick(&parts.choose(), Qt::LeftButton);
        QCOMPARE(panel.result(), int(QDialog::Accepted));
        QCOMPARE(panel.chosenPaths(), expected);
    }

    void aFolderIsChosenNotEntered()
    {
        Opened opened(m_folder.path());
        auto &[panel, parts] = opened;
        parts.select(u"site"_s);
        QCOMPARE(parts.choose().text(), u"Choose"_s);
        QTest::mouseClick(&parts.choose(), Qt::LeftButton);
        QVERIFY(!panel.isVisible());
        QCOMPARE(panel.chosenPaths(), QStringList{at(u"site"_s)});
    }

    void aFolderThatWasEnteredCanBeChosen()
    {
        Opened opened(m_folder.path());
        auto &[panel, parts] = opened;
        auto *const tree = panel.findChild<QTreeView *>(u"treeView"_s);
        Q_EMIT tree->activated(parts.indexOf(u"site"_s)); // as a double click, or Return, does
        QCOMPARE(panel.directory().absolutePath(), at(u"site"_s));
        QTRY_COMPARE(parts.shownNames(), QStringList({u"deep"_s, u"link"_s}));
        QVERIFY(parts.choose().isEnabled());
        QCOMPARE(panel.chosenPaths(), QStringList{at(u"site"_s)});
        parts.select(u"deep"_s);
        QCOMPARE(panel.chosenPaths(), QStringList{at(u"site/deep"_s)});
        parts.type(u"none"_s);
        QVERIFY(!parts.choose().isEnabled());
    }

    void columnsAreWideEnough_data()
    {
        QTest::addColumn<int>("points");
        for (const int points : {8, 10, 16, 24})
            QTest::addRow("%d points", points) << points;
    }

    void columnsAreWideEnough()
    {
        QFETCH(const int, points);
        const QFont before = QApplication::font();
        QFont font = before;
        font.setPointSize(points);
        QApplication::setFont(font);
        {
            Opened opened(m_folder.path());
            auto &[panel, parts] = opened;
            auto *const tree = panel.findChild<QTreeView *>(u"treeView"_s);
            const auto wanted = [tree](int column) {
                int width = 0;
                for (int row = 0; row < tree->model()->rowCount(tree->rootIndex()); ++row) {
                    const QString text =
                        tree->model()->index(row, column, tree->rootIndex()).data().toString();
                    width = std::max(width, tree->fontMetrics().horizontalAdvance(text));
                }
                return width;
            };
            for (const int column : {1, 2, 3})
                QTRY_VERIFY2(wanted(column) > 0 && tree->columnWidth(column) >= wanted(column),
                             qPrintable(u"column %1"_s.arg(column)));
            QTRY_VERIFY(tree->columnWidth(0) >= tree->fontMetrics().horizontalAdvance(u'w') * 20);
        }
        QApplication::setFont(before);
    }

    void sizesAreThoseOfThePreview()
    {
        QFile file(at(u"c.js"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QByteArray(12345, ' '));
        file.close();
        Opened opened(m_folder.path());
        auto &[panel, parts] = opened;
        QTRY_COMPARE(parts.indexOf(u"c.js"_s).siblingAtColumn(1).data().toString(), u"12.3 kB"_s);
        QCOMPARE(parts.indexOf(u"site"_s).siblingAtColumn(1).data().toString(), QString());
    }

    void typedNames_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QStringList>("names");
        QTest::newRow("a file") << u"a.css"_s << QStringList{u"a.css"_s};
        QTest::newRow("a hidden one") << u".hidden.css"_s << QStringList{u".hidden.css"_s};
        QTest::newRow("a folder below") << u"site/deep"_s << QStringList{u"site/deep"_s};
        QTest::newRow("a link to a folder") << u"site/link"_s << QStringList{u"site/link"_s};
        QTest::newRow("with a blank") << u"two words.css"_s << QStringList{u"two words.css"_s};
        QTest::newRow("two") << u"\"a.css\" \"c.js\""_s << QStringList{u"a.css"_s, u"c.js"_s};
        QTest::newRow("not there") << u"none.css"_s << QStringList();
        QTest::newRow("not allowed") << u"notes.txt"_s << QStringList();
        QTest::newRow("nothing") << u" "_s << QStringList();
    }

    void typedNames()
    {
        QFETCH(const QString, typed);
        QFETCH(const QStringList, names);
        Opened opened(m_folder.path());
        auto &[panel, parts] = opened;
        parts.type(typed);
        QStringList paths;
        for (const QString &name : names)
            paths += at(name);
        QCOMPARE(panel.chosenPaths(), paths);
        QCOMPARE(parts.choose().isEnabled(), !names.isEmpty());
    }

    void typedNameReplacesTheSelection()
    {
        Opened opened(m_folder.path());
        auto &[panel, parts] = opened;
        parts.select(u"site"_s);
        parts.type(u"c.js"_s);
        QCOMPARE(panel.chosenPaths(), QStringList{at(u"c.js"_s)});
        parts.type(u"none"_s);
        QVERIFY(!parts.choose().isEnabled());
        panel.accept();
        QVERIFY(panel.isVisible());
    }

    void cancelAnswersNothing()
    {
        QTimer::singleShot(0, [] { qobject_cast<QDialog *>(QApplication::activeModalWidget())->reject(); });
        QVERIFY(!OpenPanel::run(nullptr, cssAndJs).has_value());
    }

    void beginsWhereItEnded()
    {
        const auto whileRunning = [](const std::function<void(OpenPanel &)> &act) {
            QTimer::singleShot(0,
                               [act] { act(*qobject_cast<OpenPanel *>(QApplication::activeModalWidget())); });
        };
        whileRunning([this](OpenPanel &panel) {
            panel.setDirectory(m_folder.path());
            const Parts parts(panel);
            parts.type(u"c.js"_s);
            QTest::mouseClick(&parts.choose(), Qt::LeftButton);
            if (panel.isVisible())
                panel.reject();
        });
        const std::optional<QStringList> chosen = OpenPanel::run(nullptr, cssAndJs);
        QVERIFY(chosen.has_value());
        QCOMPARE(*chosen, QStringList{at(u"c.js"_s)});
        QString folder;
        whileRunning([&folder](OpenPanel &panel) {
            folder = panel.directory().absolutePath();
            panel.reject();
        });
        QVERIFY(!OpenPanel::run(nullptr, cssAndJs).has_value());
        QCOMPARE(folder, m_folder.path());
    }

private:
    [[nodiscard]] QString at(const QString &name) const { return m_folder.filePath(name); }

    QTemporaryDir m_folder;
};

BREVANT_TEST(tst_OpenPanel, QApplication)
#include "tst_OpenPanel.moc"
