#pragma once

#include "model/AppLanguage.h"

#include <QMessageBox>

namespace vormel {

/// Asks whether many rows are to go. Accepted only by its own button; Return and Escape keep everything.
class RemovalQuestion final : public QMessageBox
{
    Q_OBJECT

public:
    enum class Kind
    {
        unfinished,
        all,
    };

    RemovalQuestion(Kind kind, qsizetype count, AppLanguage language, QWidget* parent);

Q_SIGNALS:
    void confirmed();
};

} // namespace vormel
