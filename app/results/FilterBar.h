// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/results/StateFilter.h"

class QAction;
class QBoxLayout;

namespace brevant {

class FilterField;

/// The states to choose from, and a field for a text: what a table of files is to show. Ctrl+F in the window
/// goes to the field. Where there is no room beside the states, the field is below them.
class FilterBar final : public QWidget {
    Q_OBJECT

public:
    FilterBar(std::vector<StateFilter::Choice> choices, const QString &placeholder, QWidget *parent);

    [[nodiscard]] StateFilter &states() const { return *m_states; }
    [[nodiscard]] FilterField &field() const { return *m_field; }
    [[nodiscard]] QString text() const;

    /// Empties the field. False if it is empty.
    bool clearText();

Q_SIGNALS:
    void changed();

protected:
    bool event(QEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void placeField();
    void updateLooks();

    QBoxLayout *m_parts;
    StateFilter *m_states;
    FilterField *m_field;
    QAction *m_find; ///< the sign in the field
};

} // namespace brevant
