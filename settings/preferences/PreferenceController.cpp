// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/preferences/PreferenceController.h"

#include "files/PathString.h"
#include "settings/Encodings.h"
#include "settings/preferences/FamilyControls.h"
#include "settings/preferences/OutputExample.h"
#include "ui_Preferences.h"
#include "widgets/BackgroundDrag.h"
#include "widgets/Dialogs.h"
#include "widgets/FilterField.h"

#include <QApplication>
#include <QButtonGroup>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QKeyEvent>

#include <algorithm>
#include <utility>

namespace brevant {

namespace {

using namespace Qt::StringLiterals;

constexpr int tabsIndent = 16; // from the edge of the window to the first tab

/// A check box and the setting that it shows and stores.
struct CheckerRow {
    QCheckBox *Ui::Preferences::*checker;
    QLatin1StringView key;
    void (PreferenceController::*action)() = nullptr; ///< where a click does more than store the state
};

// Every check box, in the order in which they are loaded.
constexpr CheckerRow checkers[]{
    {&Ui::Preferences::lineBreakChecker, lineBreakSwitcherKeyString,
     &PreferenceController::lineBreakSwitcherClicked},
    {&Ui::Preferences::nomungeChecker, nomungeSwitcherKeyString},
    {&Ui::Preferences::preserveSemiChecker, preserveSemiSwitcherKeyString},
    {&Ui::Preferences::disableOptimizationsChecker, disableOptimizationsSwitcherKeyString},
    {&Ui::Preferences::soundChecker, soundCheckerKeyString},
    {&Ui::Preferences::filterChecker, filterCheckerKeyString},
    {&Ui::Preferences::autoMinifyChecker, autoMinifyCheckerKeyString},
    {&Ui::Preferences::enableHTMLChecker, enableHTMLCheckerKeyString},
    {&Ui::Preferences::enablePHPChecker, enablePHPCheckerKeyString,
     &PreferenceController::enablePHPCheckerClicked},
    {&Ui::Preferences::badgeChecker, badgeCheckerKeyString},
    {&Ui::Preferences::gzipChecker, gzipCheckerKeyString},
    {&Ui::Preferences::keepXMLSpaceChecker, keepXMLSpaceCheckerKeyString},
    {&Ui::Preferences::keepCommentsChecker, keepCommentsCheckerKeyString},
    {&Ui::Preferences::sourceMapChecker, sourceMapCheckerKeyString},
    {&Ui::Preferences::brotliChecker, brotliCheckerKeyString},
    {&Ui::Preferences::keepOriginalsChecker, keepOriginalsCheckerKeyString},
};

} // namespace

std::optional<QString> runFolderPanel(QWidget *window, const QString &startFolder)
{
    QFileDialog panel(window, QCoreApplication::translate("FolderPanel", "Choose a Folder"));
    panel.setFileMode(QFileDialog::Directory);
    panel.setOption(QFileDialog::ShowDirsOnly, true);
    panel.setOption(QFileDialog::ReadOnly, false); // new folders can be made
    setUpFilePanel(panel);
    panel.setSupportedSchemes({u"file"_s});
    if (QFileInfo(startFolder).isDir())
        panel.setDirectory(startFolder);
    if (panel.exec() != QDialog::Accepted)
        return std::nullopt;
    const QStringList chosen = panel.selectedFiles();
    return chosen.isEmpty() ? std::nullopt : std::optional(chosen.constFirst());
}

PreferenceController::PreferenceController(SettingsStore &store, Questions questions, QObject *parent)
    : QObject(parent), m_store(store), m_ask(std::move(questions))
{
    init();
}

PreferenceController::~PreferenceController() = default;

void PreferenceController::init()
{
    // A text typed into any field of the application stores the suffix field's text again.
    connect(qApp, &QApplication::focusChanged, this,
            [this](QWidget *, QWidget *now) { followTextChanges(now); });
    m_window = std::make_unique<QWidget>();
    m_ui = std::make_unique<Ui::Preferences>();
    m_ui->setupUi(m_window.get());
    setUpMenus();
    windowDidLoad();
    connectActions();
    m_family = std::make_unique<FamilyControls>(*m_ui, m_store, m_ask.hasBrotli);
    connect(&m_store, &SettingsStore::didChange, this, &PreferenceController::showExample);
    showExample();
    m_window->installEventFilter(this);
}

void PreferenceController::showWindow()
{
    m_window->setWindowState(m_window->windowState() & ~Qt::WindowMinimized);
    m_window->show();
    m_window->raise();
    m_window->activateWindow();
}

// Loading

void PreferenceController::setUpMenus()
{
    m_ui->suffixMatrix->setId(m_ui->addSuffixButton, addSuffixRow);
    m_ui->suffixMatrix->setId(m_ui->sameAsSourceButton, sameAsSourceRow);
    m_ui->popupButton->insertSeparator(separatorItem);
    for (const Encoding &encoding : allEncodings)
        m_ui->encodingPopupButton->addItem(encoding.title);
    auto *indent = new QWidget; // owned by the pages
    (new QHBoxLayout(indent))->setContentsMargins(tabsIndent, 0, 0, 0);
    m_ui->pages->setCornerWidget(indent, Qt::TopLeftCorner);
    // Their sizes were asked for before they had their texts, and a page behind another does not say that it
    // has grown.
    m_ui->pages->updateGeometry();
    m_ui->pageArea->updateGeometry();
}

void PreferenceController::windowDidLoad()
{
    new BackgroundDrag(m_window.get()); // owned by the window
    loadSuffix();
    m_ui->lineBreakField->setText(m_store.stringForKey(lineBreakKeyString).value_or(QString()));
    for (const CheckerRow &row : checkers)
        (m_ui.get()->*row.checker)->setChecked(m_store.boolForKey(row.key));
    enableLineBreakField();
    if (m_store.isFalse(sameFolderKeyString))
        insertNewItem(m_store.stringForKey(selectedFolderKeyString).value_or(QString()));
    loadEncoding();
}

void PreferenceController::loadSuffix()
{
    m_ui->suffixField->setText(suffixFieldValue());
    if (const QJsonValue adds = m_store.objectForKey(suffixSwitcherKeyString); adds.isBool()) {
        (adds.toBool() ? m_ui->addSuffixButton : m_ui->sameAsSourceButton)->setChecked(true);
        m_ui->suffixField->setEnabled(adds.toBool());
    }
}

void PreferenceController::enableLineBreakField()
{
    if (const QJsonValue breaks = m_store.objectForKey(lineBreakSwitcherKeyString); breaks.isBool())
        m_ui->lineBreakField->setEnabled(breaks.toBool());
}

void PreferenceController::insertNewItem(const QString &path)
{
    m_ui->popupButton->insertItem(newItem, m_ask.iconForPath(path),
                                  PathString::lastComponent(path).toString());
    m_ui->popupButton->setItemData(newItem, path, Qt::ToolTipRole);
    m_ui->popupButton->setCurrentIndex(newItem);
}

void PreferenceController::loadEncoding()
{
    const QString stored = m_store.stringForKey(selectedEncodingKeyString).value_or(QString());
    for (const Encoding &encoding : allEncodings) {
        if (encoding.selectedAtLoad && stored == encoding.name)
            m_ui->encodingPopupButton->setCurrentText(encoding.title);
    }
}

/// Nothing is checked: it tells what the settings will do, whatever that is.
void PreferenceController::showExample()
{
    const QString source = u"app.js"_s;
    const std::optional<QString> output = m_ask.outputOf(source);
    m_ui->exampleText->setText(exampleText(source, output, m_window->layoutDirection()));
    m_ui->exampleText->setToolTip(output.value_or(QString()));
}

// Wiring

void PreferenceController::connectActions()
{
    for (const CheckerRow &row : checkers) {
        const QCheckBox *checker = m_ui.get()->*row.checker;
        if (row.action != nullptr)
            connect(checker, &QCheckBox::toggled, this, row.action);
        else
            connect(checker, &QCheckBox::toggled, this, [this, key = row.key] { storeChecker(key); });
    }
    connectSuffixMatrix();
    connect(m_ui->suffixField, &QLineEdit::textChanged, this, &PreferenceController::changeSuffix);
    connect(m_ui->lineBreakField, &QLineEdit::textChanged, this, &PreferenceController::changeSuffix);
    connect(m_ui->lineBreakField, &QLineEdit::textChanged, this, &PreferenceController::changeLineBreak);
    // Not currentIndexChanged: an item acts each time it is picked.
    connect(m_ui->popupButton, &QComboBox::activated, this, &PreferenceController::folderItemChosen);
    connect(m_ui->encodingPopupButton, &QComboBox::activated, this,
            [this](int item) { storeEncoding(allEncodings.at(static_cast<std::size_t>(item)).name); });
}

/// A row acts when it is clicked, even if it is the one already chosen, and when an assistive program
/// toggles it, which is no click.
void PreferenceController::connectSuffixMatrix()
{
    connect(m_ui->suffixMatrix, &QButtonGroup::idToggled, this, [this](int, bool checked) {
        if (checked)
            suffixSwitcherClicked();
    });
    connect(m_ui->suffixMatrix, &QButtonGroup::idPressed, this,
            [this] { m_rowBeforeClick = m_ui->suffixMatrix->checkedId(); });
    connect(m_ui->suffixMatrix, &QButtonGroup::idClicked, this, [this](int row) {
        if (row == m_rowBeforeClick)
            suffixSwitcherClicked();
    });
}

void PreferenceController::followTextChanges(QWidget *focused)
{
    auto *field = qobject_cast<QLineEdit *>(focused);
    if (field != nullptr && field->window() != m_window.get() &&
        qobject_cast<FilterField *>(field) == nullptr)
        connect(field, &QLineEdit::textEdited, this, &PreferenceController::changeSuffix,
                Qt::UniqueConnection);
}

bool PreferenceController::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_window.get() && event->type() == QEvent::Close)
        close();
    // Not a shortcut, which would also hear the Escape that is meant for an open list.
    if (watched == m_window.get() && event->type() == QEvent::KeyPress) {
        const auto *key = static_cast<const QKeyEvent *>(event);
        if (key->matches(QKeySequence::Cancel) || key->matches(QKeySequence::Close))
            return m_window->close();
        // The pages hear it of their controls, but not while nothing has the focus.
        if ((key->key() == Qt::Key_Tab || key->key() == Qt::Key_Backtab) &&
            key->modifiers().testFlag(Qt::ControlModifier))
            return QCoreApplication::sendEvent(m_ui->pages, event);
    }
    return QObject::eventFilter(watched, event);
}

// Actions

void PreferenceController::changeSuffix()
{
    m_store.setObject(m_ui->suffixField->text(), suffixKeyString);
}

void PreferenceController::suffixSwitcherClicked()
{
    const int row = m_ui->suffixMatrix->checkedId();
    if (row != addSuffixRow && row != sameAsSourceRow)
        return;
    if (row == sameAsSourceRow) {
        // Shown wherever the outputs go, although its text speaks of the source's own folder.
        showWarningSheet(
            m_window.get(), tr("Be careful with this option"),
            tr("If you enable output filename 'the same as source' and choose save minified files to 'the "
               "same folder as source', the minified file will be saved as the same name of the source file "
               "under the same directory, your source file will be lost."),
            tr("OK"));
    }
    m_store.setBool(row == addSuffixRow, suffixSwitcherKeyString);
    m_ui->suffixField->setEnabled(row == addSuffixRow);
}

void PreferenceController::changeLineBreak()
{
    m_store.setObject(m_ui->lineBreakField->text(), lineBreakKeyString);
}

void PreferenceController::lineBreakSwitcherClicked()
{
    storeChecker(lineBreakSwitcherKeyString);
    enableLineBreakField();
}

void PreferenceController::enablePHPCheckerClicked()
{
    // What was stored decides, not the check box: switching it off never warns.
    if (!m_store.boolForKey(enablePHPCheckerKeyString)) {
        showWarningSheet(
            m_window.get(), tr("PHP compression is an experiment feature"),
            tr("Please aware that PHP compression is an experiment feature. Currently it doesn't support // "
               "comments.\n\nIf you want to compress a PHP file, you need to delete all the // comments "
               "before that. Brevant can remove whitespace characters for you."),
            tr("OK, I got it."));
    }
    storeChecker(enablePHPCheckerKeyString);
}

void PreferenceController::storeChecker(QLatin1StringView key)
{
    const auto *row = std::ranges::find(checkers, key, &CheckerRow::key);
    m_store.setBool((m_ui.get()->*row->checker)->isChecked(), key);
}

void PreferenceController::folderItemChosen(int index)
{
    if (index == sameFolderItem)
        sameFolderItemClicked();
    else if (index == chooseFolderItem)
        chooseFolderItemClicked();
    else if (index == newItem)
        newItemClicked();
}

void PreferenceController::chooseFolderItemClicked()
{
    const QString stored = m_store.stringForKey(selectedFolderKeyString).value_or(QString());
    const std::optional<QString> path = m_ask.folderPanel(m_window.get(), stored);
    if (!path) {
        // A folder chosen earlier keeps its item, but the outputs go beside their sources again.
        m_ui->popupButton->setCurrentIndex(sameFolderItem);
        sameFolderItemClicked();
        return;
    }
    if (m_ui->popupButton->count() > newItem)
        m_ui->popupButton->removeItem(newItem);
    insertNewItem(*path);
    m_store.setObject(*path, selectedFolderKeyString);
    newItemClicked();
}

void PreferenceController::close()
{
    if (QWidget *editor = m_window->focusWidget())
        editor->clearFocus();
}

} // namespace brevant
