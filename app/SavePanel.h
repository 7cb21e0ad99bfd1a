// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFileDialog>

class QLineEdit;

namespace brevant {

/// Asks where to save a file of one kind. The name shown ends in the kind, and so does the name chosen,
/// whatever is typed; a file that is there already is replaced only after the user has agreed.
class SavePanel final : public QFileDialog {
    Q_OBJECT

public:
    /// `kind` is an extension without its dot, `name` the proposed name without an extension.
    SavePanel(const QString &kind, const QString &name, QWidget *parent);

    /// The chosen path, once accepted.
    [[nodiscard]] QString chosenPath() const;

    /// While this is false the panel stays open and cannot be confirmed; it is true at first.
    void setSavingAllowed(bool allowed);

    void accept() override;
    void done(int result) override;

private:
    void updateSaveButton();

    const QString m_kind;
    bool m_savingAllowed = true;
    QLineEdit *m_nameEdit; ///< the dialog's own
};

} // namespace brevant
