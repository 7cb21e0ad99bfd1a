// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLineEdit>

namespace brevant {

/// A field whose text says what a list is to show. It is no text of the user's that anything else hears of,
/// unlike what is typed into other fields of the program.
class FilterField final : public QLineEdit {
    Q_OBJECT

public:
    using QLineEdit::QLineEdit;
};

} // namespace brevant
