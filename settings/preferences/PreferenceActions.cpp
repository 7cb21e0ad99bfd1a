// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The actions of the preferences: what a change of each control does.

#include "settings/preferences/PreferenceController.h"

#include "settings/Encodings.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"
#include "ui_Preferences.h"
#include "widgets/WarningSheet.h"

#include <QButtonGroup>

namespace brevant {

void PreferenceController::changeSuffix()
{
    m_store.setObject(m_ui->suffixField->text(), suffixKeyString);
}

void PreferenceController::suffixSwitcherClicked()
{
    switch (m_ui->suffixMatrix->checkedId()) {
    case addSuffixRow:
        m_store.setBool(true, suffixSwitcherKeyString);
        m_ui->suffixField->setEnabled(true);
        break;
    case sameAsSourceRow:
        // Shown wherever the outputs go, although its text speaks of the source's own folder.
        showWarningSheet(
            m_window.get(), tr("Be careful with this option"),
            tr("If you enable output filename 'the same as source' and choose save minified files to 'the "
               "same "
               "folder as source', the minified file will be saved as the same name of the source file "
               "under the "
               "same directory, your source file will be lost."),
            tr("OK"));
        m_store.setBool(false, suffixSwitcherKeyString);
        m_ui->suffixField->setEnabled(false);
        break;
    default:
        break;
    }
}

void PreferenceController::changeLineBreak()
{
    m_store.setObject(m_ui->lineBreakField->text(), lineBreakKeyString);
}

void PreferenceController::lineBreakSwitcherClicked()
{
    storeChecker(m_ui->lineBreakChecker, lineBreakSwitcherKeyString);
    enableLineBreakField();
}

void PreferenceController::nomungeCheckerClicked()
{
    storeChecker(m_ui->nomungeChecker, nomungeSwitcherKeyString);
}

void PreferenceController::preserveSemiCheckerClicked()
{
    storeChecker(m_ui->preserveSemiChecker, preserveSemiSwitcherKeyString);
}

void PreferenceController::disableOptimizationsCheckerClicked()
{
    storeChecker(m_ui->disableOptimizationsChecker, disableOptimizationsSwitcherKeyString);
}

void PreferenceController::soundCheckerClicked()
{
    storeChecker(m_ui->soundChecker, soundCheckerKeyString);
}

void PreferenceController::filterCheckerClicked()
{
    storeChecker(m_ui->filterChecker, filterCheckerKeyString);
}

void PreferenceController::autoMinifyCheckerClicked()
{
    storeChecker(m_ui->autoMinifyChecker, autoMinifyCheckerKeyString);
}

void PreferenceController::enableHTMLCheckerClicked()
{
    storeChecker(m_ui->enableHTMLChecker, enableHTMLCheckerKeyString);
}

void PreferenceController::enablePHPCheckerClicked()
{
    // What was stored decides, not the check box: switching it off never warns.
    if (!m_store.boolForKey(enablePHPCheckerKeyString)) {
        showWarningSheet(
            m_window.get(), tr("PHP compression is an experiment feature"),
            tr("Please aware that PHP compression is an experiment feature. Currently it doesn't support // "
               "comments.\n\nIf you want to compress a PHP file, you need to delete all the // comments "
               "before "
               "that. Brevant can remove whitespace characters for you."),
            tr("OK, I got it."));
    }
    storeChecker(m_ui->enablePHPChecker, enablePHPCheckerKeyString);
}

void PreferenceController::badgeCheckerClicked()
{
    storeChecker(m_ui->badgeChecker, badgeCheckerKeyString);
}

void PreferenceController::gzipCheckerClicked()
{
    storeChecker(m_ui->gzipChecker, gzipCheckerKeyString);
}

void PreferenceController::keepXMLSpaceCheckerClicked()
{
    storeChecker(m_ui->keepXMLSpaceChecker, keepXMLSpaceCheckerKeyString);
}

void PreferenceController::sameFolderItemClicked()
{
    m_store.setBool(true, sameFolderKeyString);
}

void PreferenceController::chooseFolderItemClicked()
{
    const QString stored = m_store.stringForKey(selectedFolderKeyString).value_or(QString());
    const std::optional<QString> path = m_folderPanel(m_window.get(), stored);
    if (!path) {
        // A folder chosen earlier keeps its item, but the outputs go beside their sources again.
        m_ui->popupButton->setCurrentIndex(sameFolderItem);
        m_store.setBool(true, sameFolderKeyString);
        return;
    }
    if (m_ui->popupButton->count() > newItem)
        m_ui->popupButton->removeItem(newItem);
    insertNewItem(*path);
    m_store.setObject(*path, selectedFolderKeyString);
    m_store.setBool(false, sameFolderKeyString);
}

void PreferenceController::newItemClicked()
{
    m_store.setBool(false, sameFolderKeyString);
}

void PreferenceController::set_utf_8()
{
    storeEncoding(enc_utf_8);
}

void PreferenceController::set_gb2312()
{
    storeEncoding(enc_gb2312);
}

void PreferenceController::set_gbk()
{
    storeEncoding(enc_gbk);
}

void PreferenceController::set_gb18030()
{
    storeEncoding(enc_gb18030);
}

void PreferenceController::set_big5()
{
    storeEncoding(enc_big5);
}

void PreferenceController::set_big5_hkscs()
{
    storeEncoding(enc_big5_hkscs);
}

void PreferenceController::set_shift_jis()
{
    storeEncoding(enc_shift_jis);
}

void PreferenceController::set_iso_2022_jp()
{
    storeEncoding(enc_iso_2022_jp);
}

void PreferenceController::set_iso_2022_kr()
{
    storeEncoding(enc_iso_2022_kr);
}

void PreferenceController::set_iso_8859_1()
{
    storeEncoding(enc_iso_8859_1);
}

void PreferenceController::set_iso_8859_15()
{
    storeEncoding(enc_iso_8859_15);
}

void PreferenceController::close()
{
    if (QWidget *editor = m_window->focusWidget())
        editor->clearFocus();
}

void PreferenceController::storeEncoding(EncodingItem item)
{
    m_store.setObject(QString(allEncodings().at(item).name), selectedEncodingKeyString);
}

} // namespace brevant
