// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/TableSelectionWatch.h"

#include "queue/view/BVTableView.h"

#include <QCoreApplication>
#include <QEvent>
#include <QItemSelectionModel>

namespace brevant {

TableSelectionWatch::TableSelectionWatch(QObject *parent) : QObject(parent)
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool TableSelectionWatch::eventFilter(QObject *watched, QEvent *event)
{
    // Every widget is polished once, before it is first shown.
    if (event->type() != QEvent::Polish)
        return false;
    if (auto *const filesTable = qobject_cast<BVTableView *>(watched)) {
        connect(filesTable, &BVTableView::selectionDidChange, this,
                &TableSelectionWatch::tableSelectionDidChange, Qt::UniqueConnection);
    } else if (auto *const table = qobject_cast<QTableView *>(watched);
               table != nullptr && table->selectionModel() != nullptr) {
        connect(table->selectionModel(), &QItemSelectionModel::selectionChanged, this,
                &TableSelectionWatch::tableSelectionDidChange, Qt::UniqueConnection);
    }
    return false;
}

} // namespace brevant
