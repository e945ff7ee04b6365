#pragma once

#include "model/PendingQuestions.h"

#include <QPushButton>

namespace vormel {

/// One host of a choice: its name, and how many files it has.
class HostButton final : public QPushButton
{
    Q_OBJECT

public:
    explicit HostButton(const PendingHostSelection::HostGroup& group, QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

private:
    void layOut(const QString& host, const QString& count);
};

} // namespace vormel
