// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/preferences/PreferenceController.h"

#include "settings/Encodings.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"
#include "ui_Preferences.h"
#include "widgets/BackgroundDrag.h"

#include <QApplication>
#include <QButtonGroup>
#include <QKeyEvent>

#include <algorithm>
#include <array>
#include <utility>

namespace brevant {

namespace {

/// What follows the last "/" of a path; one at its end does not count. "/" gives "/".
QString lastComponent(const QString &path)
{
    QStringView rest = path;
    while (rest.size() > 1 && rest.endsWith(u'/'))
        rest.chop(1);
    return (rest.size() == 1 ? rest : rest.sliced(rest.lastIndexOf(u'/') + 1)).toString();
}

} // namespace

PreferenceController::PreferenceController(SettingsStore &store, IconForPath iconForPath,
                                           FolderPanel folderPanel, QObject *parent)
    : QObject(parent), m_store(store), m_iconForPath(std::move(iconForPath)),
      m_folderPanel(std::move(folderPanel))
{
    init();
}

PreferenceController::~PreferenceController() = default;

void PreferenceController::init()
{
    // A text typed into any field of the application stores the suffix field's text again.
    connect(qApp, &QApplication::focusChanged, this,
            [this](QWidget *, QWidget *now) { followTextChanges(now); });
    window()->installEventFilter(this);
    connectTextFields();
}

QWidget *PreferenceController::window()
{
    if (m_window == nullptr) {
        m_window = std::make_unique<QWidget>();
        m_ui = std::make_unique<Ui::Preferences>();
        m_ui->setupUi(m_window.get());
        setUpMenus();
        windowDidLoad();
        connectActions();
        connectCheckers();
    }
    return m_window.get();
}

void PreferenceController::showWindow()
{
    QWidget *preferences = window();
    preferences->setWindowState(preferences->windowState() & ~Qt::WindowMinimized);
    preferences->show();
    preferences->raise();
    preferences->activateWindow();
}

QString PreferenceController::suffixFieldValue() const
{
    return m_store.stringForKey(suffixKeyString).value_or(QString());
}

// Loading

void PreferenceController::windowDidLoad()
{
    new BackgroundDrag(m_window.get()); // owned by the window
    loadSuffix();
    loadLineBreak();
    setChecker(m_ui->nomungeChecker, nomungeSwitcherKeyString);
    setChecker(m_ui->preserveSemiChecker, preserveSemiSwitcherKeyString);
    setChecker(m_ui->disableOptimizationsChecker, disableOptimizationsSwitcherKeyString);
    loadOutputFolder();
    setChecker(m_ui->soundChecker, soundCheckerKeyString);
    setChecker(m_ui->filterChecker, filterCheckerKeyString);
    setChecker(m_ui->autoMinifyChecker, autoMinifyCheckerKeyString);
    loadEncoding();
    setChecker(m_ui->enableHTMLChecker, enableHTMLCheckerKeyString);
    setChecker(m_ui->enablePHPChecker, enablePHPCheckerKeyString);
    setChecker(m_ui->badgeChecker, badgeCheckerKeyString);
    setChecker(m_ui->gzipChecker, gzipCheckerKeyString);
    setChecker(m_ui->keepXMLSpaceChecker, keepXMLSpaceCheckerKeyString);
}

void PreferenceController::loadSuffix()
{
    m_ui->suffixField->setText(suffixFieldValue());
    if (m_store.isTrue(suffixSwitcherKeyString)) {
        m_ui->suffixMatrix->button(addSuffixRow)->setChecked(true);
        m_ui->suffixField->setEnabled(true);
    } else if (m_store.isFalse(suffixSwitcherKeyString)) {
        m_ui->suffixMatrix->button(sameAsSourceRow)->setChecked(true);
        m_ui->suffixField->setEnabled(false);
    }
}

void PreferenceController::loadLineBreak()
{
    m_ui->lineBreakField->setText(m_store.stringForKey(lineBreakKeyString).value_or(QString()));
    setChecker(m_ui->lineBreakChecker, lineBreakSwitcherKeyString);
    enableLineBreakField();
}

void PreferenceController::loadOutputFolder()
{
    if (m_store.isFalse(sameFolderKeyString))
        insertNewItem(m_store.stringForKey(selectedFolderKeyString).value_or(QString()));
}

void PreferenceController::loadEncoding()
{
    const QString stored = m_store.stringForKey(selectedEncodingKeyString).value_or(QString());
    const auto found = std::ranges::find_if(allEncodings(), [&stored](const Encoding &encoding) {
        return encoding.selectedAtLoad && stored == encoding.name;
    });
    if (found != allEncodings().end())
        m_ui->encodingPopupButton->setCurrentIndex(m_ui->encodingPopupButton->findText(found->title));
}

void PreferenceController::setUpMenus()
{
    m_ui->suffixMatrix->setId(m_ui->addSuffixButton, addSuffixRow);
    m_ui->suffixMatrix->setId(m_ui->sameAsSourceButton, sameAsSourceRow);
    m_ui->popupButton->insertSeparator(separatorItem);
    for (const Encoding &encoding : allEncodings())
        m_ui->encodingPopupButton->addItem(encoding.title);
}

// Wiring

void PreferenceController::connectActions()
{
    // A row is chosen by a click, also by one on the row already chosen, and by assistive programs, which
    // toggle it without a click.
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
    // Not currentIndexChanged: an item acts each time it is picked.
    connect(m_ui->popupButton, &QComboBox::activated, this, &PreferenceController::folderItemChosen);
    connect(m_ui->encodingPopupButton, &QComboBox::activated, this,
            &PreferenceController::encodingItemChosen);
}

void PreferenceController::connectCheckers()
{
    using Action = void (PreferenceController::*)();
    const std::array<std::pair<QCheckBox *, Action>, 12> actions{{
        {m_ui->lineBreakChecker, &PreferenceController::lineBreakSwitcherClicked},
        {m_ui->nomungeChecker, &PreferenceController::nomungeCheckerClicked},
        {m_ui->preserveSemiChecker, &PreferenceController::preserveSemiCheckerClicked},
        {m_ui->disableOptimizationsChecker, &PreferenceController::disableOptimizationsCheckerClicked},
        {m_ui->soundChecker, &PreferenceController::soundCheckerClicked},
        {m_ui->filterChecker, &PreferenceController::filterCheckerClicked},
        {m_ui->autoMinifyChecker, &PreferenceController::autoMinifyCheckerClicked},
        {m_ui->enableHTMLChecker, &PreferenceController::enableHTMLCheckerClicked},
        {m_ui->enablePHPChecker, &PreferenceController::enablePHPCheckerClicked},
        {m_ui->badgeChecker, &PreferenceController::badgeCheckerClicked},
        {m_ui->gzipChecker, &PreferenceController::gzipCheckerClicked},
        {m_ui->keepXMLSpaceChecker, &PreferenceController::keepXMLSpaceCheckerClicked},
    }};
    for (const auto &[checker, action] : actions)
        connect(checker, &QCheckBox::toggled, this, action);
}

void PreferenceController::connectTextFields()
{
    connect(m_ui->suffixField, &QLineEdit::textChanged, this, &PreferenceController::changeSuffix);
    connect(m_ui->lineBreakField, &QLineEdit::textChanged, this, &PreferenceController::changeSuffix);
    connect(m_ui->lineBreakField, &QLineEdit::textChanged, this, &PreferenceController::changeLineBreak);
}

void PreferenceController::followTextChanges(QWidget *focused)
{
    auto *field = qobject_cast<QLineEdit *>(focused);
    if (field != nullptr && field->window() != m_window.get())
        connect(field, &QLineEdit::textEdited, this, &PreferenceController::changeSuffix,
                Qt::UniqueConnection);
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

void PreferenceController::encodingItemChosen(int index)
{
    using Action = void (PreferenceController::*)();
    static constexpr std::array<Action, 11> actions{
        &PreferenceController::set_utf_8,       &PreferenceController::set_gb2312,
        &PreferenceController::set_gbk,         &PreferenceController::set_gb18030,
        &PreferenceController::set_big5,        &PreferenceController::set_big5_hkscs,
        &PreferenceController::set_shift_jis,   &PreferenceController::set_iso_2022_jp,
        &PreferenceController::set_iso_2022_kr, &PreferenceController::set_iso_8859_1,
        &PreferenceController::set_iso_8859_15,
    };
    (this->*actions.at(static_cast<std::size_t>(index)))();
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
    }
    return QObject::eventFilter(watched, event);
}

// Helpers of the actions

void PreferenceController::insertNewItem(const QString &path)
{
    m_ui->popupButton->insertItem(newItem, m_iconForPath(path), lastComponent(path));
    m_ui->popupButton->setItemData(newItem, path, Qt::ToolTipRole);
    m_ui->popupButton->setCurrentIndex(newItem);
}

void PreferenceController::enableLineBreakField()
{
    if (m_store.isFalse(lineBreakSwitcherKeyString))
        m_ui->lineBreakField->setEnabled(false);
    else if (m_store.isTrue(lineBreakSwitcherKeyString))
        m_ui->lineBreakField->setEnabled(true);
}

void PreferenceController::setChecker(QCheckBox *checker, QLatin1StringView key) const
{
    checker->setChecked(m_store.boolForKey(key));
}

void PreferenceController::storeChecker(const QCheckBox *checker, QLatin1StringView key)
{
    m_store.setBool(checker->isChecked(), key);
}

} // namespace brevant
