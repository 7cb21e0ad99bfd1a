// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include <initializer_list>
#include <optional>

namespace brevant {

/// The arguments of one child process. The list ends at the first absent value: whatever is added after it
/// is dropped, and the process starts with what is left.
class ArgumentList final {
public:
    ArgumentList() = default;
    ArgumentList(std::initializer_list<std::optional<QString>> arguments)
    {
        for (const std::optional<QString> &argument : arguments)
            add(argument);
    }

    /// Adds one argument, or ends the list if it is absent.
    ArgumentList &add(const std::optional<QString> &argument)
    {
        m_ended = m_ended || !argument;
        if (!m_ended)
            m_values.append(*argument);
        return *this;
    }

    [[nodiscard]] const QStringList &values() const { return m_values; }

private:
    QStringList m_values;
    bool m_ended = false;
};

} // namespace brevant
