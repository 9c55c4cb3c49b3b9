#pragma once

#include <QAbstractListModel>
#include <QByteArrayList>
#include <QVariant>

namespace kelmoth {

/// The rows of a list in the panel, each with the same named values, which a delegate takes as required
/// properties. What changes reaches the delegate that is there: it can animate the change and keeps the
/// keyboard's focus. Main thread.
class RowsModel : public QAbstractListModel {
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    using Rows = QList<QVariantList>;

    explicit RowsModel(QByteArrayList names, QObject *parent = nullptr);

    /// Puts these rows in place of the others; the values of each in the order of the names.
    void setRows(Rows rows);

    int count() const { return static_cast<int>(m_rows.size()); }

    /// The value of that name in a row; invalid when there is none.
    QVariant value(int row, const QByteArray &name) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void countChanged();

private:
    void resize(const Rows &rows);

    QByteArrayList m_names;
    Rows m_rows;
};

} // namespace kelmoth
