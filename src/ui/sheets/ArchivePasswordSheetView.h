#pragma once

#include "model/PendingQuestions.h"

#include <QDialog>

class QLineEdit;
class QPushButton;

namespace vormel {

class AppSettings;
class StyledLabel;

/// The sheet that asks for the password of one archive. Closing it in any way but by a password is `rejected`. The
/// settings must outlive it.
class ArchivePasswordSheetView final : public QDialog
{
    Q_OBJECT

public:
    ArchivePasswordSheetView(const PendingExtractionPassword& pending, const AppSettings& settings, QWidget* parent);

Q_SIGNALS:
    /// The password as it was typed.
    void confirmed(const QString& password);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void setUpParts();
    void layOut();
    void bindTexts(const AppSettings& settings);
    void showArchiveName();
    void confirm();

    const PendingExtractionPassword m_pending;
    StyledLabel* m_title;
    StyledLabel* m_archive;
    StyledLabel* m_wrong;
    QLineEdit* m_password;
    QPushButton* m_extract;
    QPushButton* m_cancel;
};

} // namespace vormel
