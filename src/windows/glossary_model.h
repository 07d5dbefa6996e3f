#pragma once

#include <QAbstractTableModel>
#include <QUuid>

namespace nivora {

class GlossaryStore;

// The glossary as a table of two columns to edit. Holds nothing but the number of
// rows that it has told of.
class GlossaryModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Chinese, Japanese, ColumnCount };

    // `store` outlives the model.
    GlossaryModel(GlossaryStore &store, QObject *parent);

    QUuid id(int row) const;

    // What an empty field says about itself.
    static QString placeholder(int column);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

private:
    GlossaryStore &m_store;
    int m_rows;
};

} // namespace nivora
