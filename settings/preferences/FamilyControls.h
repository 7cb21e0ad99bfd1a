// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>

#include <functional>

class QWidget;

namespace Ui {
class Preferences;
}

namespace brevant {

class SettingsStore;

/// A control that is greyed while it is of no use, with the reason as its tooltip in place of its own.
class GreyableControl final {
public:
    explicit GreyableControl(QWidget *control);

    /// Greys it for that reason; without one it can be used.
    void grey(const QString &reason);

private:
    QWidget *const m_control;
    const QString m_toolTip;
};

/// The pop-up of the two families of compressors, and the check boxes that are not for both, or need a
/// program. They follow the store, whoever changes it.
class FamilyControls final : public QObject {
    Q_OBJECT

public:
    /// The controls and the store must outlive it.
    FamilyControls(Ui::Preferences &ui, SettingsStore &store, std::function<bool()> hasBrotli);

private:
    void follow();
    void greyBrotli();

    Ui::Preferences &m_ui;
    SettingsStore &m_store;
    const std::function<bool()> m_hasBrotli;
    GreyableControl m_semicolons;
    GreyableControl m_sourceMaps;
    GreyableControl m_comments;
    GreyableControl m_brotli;
};

} // namespace brevant
