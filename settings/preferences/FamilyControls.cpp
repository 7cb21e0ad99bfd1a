// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/preferences/FamilyControls.h"

#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"
#include "ui_Preferences.h"

#include <utility>

namespace brevant {

using namespace Qt::StringLiterals;

namespace {

/// The items of the pop-up.
enum FamilyItem { classicItem, modernItem };

} // namespace

GreyableControl::GreyableControl(QWidget *control) : m_control(control), m_toolTip(control->toolTip()) {}

void GreyableControl::grey(const QString &reason)
{
    m_control->setEnabled(reason.isEmpty());
    m_control->setToolTip(reason.isEmpty() ? m_toolTip : reason);
}

FamilyControls::FamilyControls(Ui::Preferences &ui, SettingsStore &store, std::function<bool()> hasBrotli)
    : m_ui(ui), m_store(store), m_hasBrotli(std::move(hasBrotli)), m_semicolons(ui.preserveSemiChecker),
      m_sourceMaps(ui.sourceMapChecker), m_comments(ui.keepCommentsChecker), m_brotli(ui.brotliChecker)
{
    connect(ui.compressorsPopupButton, &QComboBox::activated, this, [this](int item) {
        m_store.setObject(item == modernItem ? "modern"_L1 : "classic"_L1, compressorsKeyString);
    });
    connect(&store, &SettingsStore::didChange, this, &FamilyControls::follow);
    follow();
}

void FamilyControls::follow()
{
    const bool isModern = isModernChosen(m_store);
    m_ui.compressorsPopupButton->setCurrentIndex(isModern ? modernItem : classicItem);
    m_semicolons.grey(isModern ? tr("Modern compressors drop every semicolon that is not needed.")
                               : QString());
    const QString needsModern = isModern ? QString() : tr("Needs the modern compressors.");
    m_sourceMaps.grey(needsModern);
    m_comments.grey(needsModern);
    greyBrotli();
}

void FamilyControls::greyBrotli()
{
    m_brotli.grey(m_hasBrotli() ? QString() : tr("Needs the program brotli, which is not installed."));
    // Files fail while it is on, so it can always be switched off.
    if (m_ui.brotliChecker->isChecked())
        m_ui.brotliChecker->setEnabled(true);
}

} // namespace brevant
