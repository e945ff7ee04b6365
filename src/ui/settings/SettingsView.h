#pragma once

#include <QWidget>

class QCheckBox;
class QComboBox;
class QFormLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QSpinBox;

namespace vormel {

class AppSettings;

/// The page of the preferences. Each control writes its setting at once and follows it when it is set elsewhere. The
/// settings must outlive it.
class SettingsView final : public QWidget
{
    Q_OBJECT

public:
    explicit SettingsView(AppSettings& settings, QWidget* parent = nullptr);

private:
    void nameParts();
    void layOut();
    QLabel* addRow(QFormLayout& form, QWidget* control);
    void connectParts();
    void retranslate();
    void showValues();
    void chooseFolder();
    void useFolder(const QString& path);

    AppSettings& m_settings;
    QLineEdit* m_folder;
    QPushButton* m_choose;
    QSpinBox* m_concurrent;
    QCheckBox* m_autoStart;
    QComboBox* m_language;
    QLabel* m_folderLabel = nullptr;
    QLabel* m_concurrentLabel = nullptr;
    QLabel* m_languageLabel = nullptr;
};

} // namespace vormel
