#pragma once

#include "model/AppLanguage.h"

#include <QFrame>

class QLineEdit;
class QPushButton;

namespace vormel {

class StyledLabel;

/// Asks for another name of a group. Closes with a click elsewhere, and deletes itself when it is closed.
class RenamePopover final : public QFrame
{
    Q_OBJECT

public:
    /// Begins with the name that is shown now.
    RenamePopover(const QString& name, AppLanguage language, QWidget* parent);

    /// Opens below that part of the widget, or above it where there is no room.
    void openBelow(const QWidget& widget, const QRect& part);

Q_SIGNALS:
    void saved(const QString& name);

private:
    void setUpParts();
    void layOut();
    void setTexts(AppLanguage language);
    void removeTailTags();
    void turnDotsToSpaces();
    void save();

    StyledLabel* m_title;
    StyledLabel* m_note;
    QLineEdit* m_draftName;
    QPushButton* m_removeTags;
    QPushButton* m_dotsToSpaces;
    QPushButton* m_cancel;
    QPushButton* m_save;
};

} // namespace vormel
