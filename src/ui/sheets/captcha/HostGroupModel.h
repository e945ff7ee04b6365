#pragma once

#include "model/PendingQuestions.h"

#include <QAbstractListModel>
#include <QIcon>

namespace vormel {

/// The hosts to choose from: a row for each, with its name and how many files it has.
class HostGroupModel final : public QAbstractListModel
{
    Q_OBJECT

public:
    using Groups = std::vector<PendingHostSelection::HostGroup>;

    explicit HostGroupModel(QObject* parent);

    void setGroups(const Groups& groups);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

private:
    Groups m_groups;
    QIcon m_icon;
};

} // namespace vormel
