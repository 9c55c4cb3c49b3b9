#include "UI/Views/RowsModel.h"

#include <algorithm>

namespace kelmoth {

RowsModel::RowsModel(QByteArrayList names, QObject *parent)
    : QAbstractListModel(parent), m_names(std::move(names))
{
}

void RowsModel::setRows(Rows rows)
{
    resize(rows);
    for (int row = 0; row < count(); ++row) {
        if (m_rows[row] != rows[row]) {
            m_rows[row] = std::move(rows[row]);
            Q_EMIT dataChanged(index(row), index(row));
        }
    }
}

/// Adds rows at the end, or takes them away there, until there are as many.
void RowsModel::resize(const Rows &rows)
{
    const int before = count();
    const int after = static_cast<int>(rows.size());
    if (after > before) {
        beginInsertRows({}, before, after - 1);
        m_rows += rows.mid(before);
        endInsertRows();
    } else if (after < before) {
        beginRemoveRows({}, after, before - 1);
        m_rows.resize(after);
        endRemoveRows();
    }
    if (after != before) {
        Q_EMIT countChanged();
    }
}

QVariant RowsModel::value(int row, const QByteArray &name) const
{
    return data(index(row), Qt::UserRole + static_cast<int>(m_names.indexOf(name)));
}

int RowsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant RowsModel::data(const QModelIndex &index, int role) const
{
    return index.isValid() ? m_rows.value(index.row()).value(role - Qt::UserRole) : QVariant();
}

QHash<int, QByteArray> RowsModel::roleNames() const
{
    QHash<int, QByteArray> names;
    for (qsizetype i = 0; i < m_names.size(); ++i) {
        names.insert(Qt::UserRole + static_cast<int>(i), m_names[i]);
    }
    return names;
}

} // namespace kelmoth
