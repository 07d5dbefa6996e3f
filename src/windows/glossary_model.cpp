#include "glossary_model.h"

#include "stores/glossary_store.h"

namespace nivora {

GlossaryModel::GlossaryModel(GlossaryStore &store, QObject *parent)
    : QAbstractTableModel(parent)
    , m_store(store)
    , m_rows(int(store.terms().size()))
{
    // The store tells afterwards. Until the view has been told, too, rowCount() is
    // what it was, and data() minds the true number.
    connect(&store, &GlossaryStore::appended, this, [this](int count) {
        beginInsertRows({}, m_rows, m_rows + count - 1);
        m_rows += count;
        endInsertRows();
    });
    connect(&store, &GlossaryStore::removed, this, [this](int first, int last) {
        beginRemoveRows({}, first, last);
        m_rows -= last - first + 1;
        endRemoveRows();
    });
    connect(&store, &GlossaryStore::updated, this, [this](int place) {
        Q_EMIT dataChanged(index(place, 0), index(place, ColumnCount - 1));
    });
}

QUuid GlossaryModel::id(int row) const
{
    return m_store.terms().at(size_t(row)).id;
}

QString GlossaryModel::placeholder(int column)
{
    return column == Chinese ? tr("中文") : tr("日本語");
}

int GlossaryModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_rows;
}

int GlossaryModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant GlossaryModel::data(const QModelIndex &index, int role) const
{
    const auto &terms = m_store.terms();
    const bool isText = role == Qt::DisplayRole || role == Qt::EditRole;
    if (!isText || !index.isValid() || size_t(index.row()) >= terms.size())
        return {};
    const GlossaryTerm &term = terms[size_t(index.row())];
    return index.column() == Chinese ? term.zh : term.ja;
}

QVariant GlossaryModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole)
        return placeholder(section);
    return {};
}

bool GlossaryModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole || !index.isValid() || index.row() >= m_rows)
        return false;
    GlossaryTerm term = m_store.terms().at(size_t(index.row()));
    (index.column() == Chinese ? term.zh : term.ja) = value.toString();
    m_store.update(term);
    return true;
}

Qt::ItemFlags GlossaryModel::flags(const QModelIndex &index) const
{
    const auto flags = QAbstractTableModel::flags(index) | Qt::ItemNeverHasChildren;
    return index.isValid() ? flags | Qt::ItemIsEditable : flags;
}

} // namespace nivora
