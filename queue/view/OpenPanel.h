// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFileDialog>

#include <optional>

class QAbstractItemView;
class QLineEdit;
class QPushButton;

namespace brevant {

class SettingsStore;

/// The extensions that the open panel offers, by the kinds that are switched on.
[[nodiscard]] QStringList allowedFileTypes(const SettingsStore &settings);

/// The one panel in which the user chooses files, folders, or both.
class OpenPanel final : public QFileDialog {
    Q_OBJECT

public:
    /// Shows folders, and the files whose extension is one of `allowedTypes`, case ignored.
    explicit OpenPanel(const QStringList &allowedTypes, QWidget *parent = nullptr);

    /// What is chosen, in the order in which the panel shows it; without a selection, the folder shown if the
    /// user went there.
    [[nodiscard]] QStringList chosenPaths() const;

    /// Runs the panel modally, from the folder in which it ended last. The chosen paths, or nothing if the
    /// user did not confirm.
    [[nodiscard]] static std::optional<QStringList> run(QWidget *parent, const QStringList &allowedTypes);

    void accept() override;

private:
    void setUpChooseButton();
    void setUpHiddenFiles();
    void updateChooseButton();
    [[nodiscard]] QStringList typedPaths() const;
    [[nodiscard]] bool mayBeChosen(const QString &path) const;

    const QStringList m_allowedTypes;
    QAbstractItemView *m_list = nullptr; ///< the dialog's own, like the next
    QLineEdit *m_nameEdit = nullptr;
    QPushButton *m_chooseButton = nullptr;
    bool m_wasEntered = false; ///< the folder shown, by the user
};

} // namespace brevant
