#include "ui/settings/SettingsView.h"

#include "model/AppSettings.h"
#include "ui/kit/SheetButton.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSpinBox>

namespace vormel {

SettingsView::SettingsView(AppSettings& settings, QWidget* parent)
    : QWidget(parent)
    , m_settings(settings)
    , m_folder(new QLineEdit(this))
    , m_choose(new SheetButton(this))
    , m_concurrent(new QSpinBox(this))
    , m_autoStart(new QCheckBox(this))
    , m_language(new QComboBox(this))
{
    constexpr int mostConcurrent = 10;
    setObjectName(QStringLiteral("settingsView"));
    m_folder->setTextMargins(4, 2, 4, 2);
    m_concurrent->setRange(1, mostConcurrent);
    for (const AppLanguage language : allLanguages)
        m_language->addItem(rawValue(language), static_cast<int>(language));
    nameParts();
    layOut();
    showValues();
    retranslate();
    connectParts();
}

void SettingsView::nameParts()
{
    m_folder->setObjectName(QStringLiteral("downloadFolder"));
    m_choose->setObjectName(QStringLiteral("chooseDownloadFolder"));
    m_concurrent->setObjectName(QStringLiteral("concurrentDownloads"));
    m_autoStart->setObjectName(QStringLiteral("autoStartDownloads"));
    m_language->setObjectName(QStringLiteral("language"));
}

QLabel* SettingsView::addRow(QFormLayout& form, QWidget* control)
{
    auto* label = new QLabel(this);
    label->setBuddy(control);
    form.addRow(label, control);
    return label;
}

void SettingsView::layOut()
{
    constexpr int widest = 640; // longer lines are hard to follow
    auto* folder = new QWidget(this);
    auto* folderRow = new QHBoxLayout(folder);
    folderRow->setContentsMargins(0, 0, 0, 0);
    folderRow->addWidget(m_folder, 1);
    folderRow->addWidget(m_choose);
    auto* content = new QWidget(this);
    content->setMaximumWidth(widest);
    auto* form = new QFormLayout(content);
    form->setContentsMargins(24, 24, 24, 24);
    form->setHorizontalSpacing(16);
    form->setVerticalSpacing(16);
    form->setLabelAlignment(Qt::AlignTrailing | Qt::AlignVCenter);
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    m_folderLabel = addRow(*form, folder);
    m_folderLabel->setBuddy(m_folder);
    m_concurrent->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    m_language->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    m_concurrentLabel = addRow(*form, m_concurrent);
    form->addRow(QString(), m_autoStart);
    m_languageLabel = addRow(*form, m_language);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(content);
    column->addStretch();
}

void SettingsView::connectParts()
{
    connect(m_folder, &QLineEdit::editingFinished, this, [this] { useFolder(m_folder->text()); });
    connect(m_choose, &QPushButton::clicked, this, &SettingsView::chooseFolder);
    connect(m_concurrent, &QSpinBox::valueChanged, this, [this](int n) { m_settings.maxConcurrentDownloads.set(n); });
    connect(m_autoStart, &QCheckBox::toggled, this, [this](bool isOn) { m_settings.autoStartDownloads.set(isOn); });
    connect(m_language, &QComboBox::activated, this,
            [this](int row) { m_settings.language.set(allLanguages.at(static_cast<std::size_t>(row))); });
    connect(&m_settings, &AppSettings::changed, this, &SettingsView::showValues);
    connect(&m_settings, &AppSettings::languageSet, this, &SettingsView::retranslate);
}

void SettingsView::retranslate()
{
    const AppLanguage language = m_settings.language.value();
    const QString folder = pair(language, u"Download folder", u"Cartella di download");
    const QString concurrent = pair(language, u"Concurrent downloads", u"Download simultanei");
    const QString languageText = pair(language, u"Language", u"Lingua");
    m_folderLabel->setText(folder);
    m_folder->setAccessibleName(folder);
    m_choose->setText(pair(language, u"Choose…", u"Scegli…"));
    m_choose->setAccessibleName(folder + QStringLiteral(": ") + m_choose->text());
    m_concurrentLabel->setText(concurrent);
    m_concurrent->setAccessibleName(concurrent);
    m_autoStart->setText(
        pair(language, u"Start new downloads automatically", u"Avvia automaticamente i nuovi download"));
    m_autoStart->setAccessibleName(m_autoStart->text());
    m_languageLabel->setText(languageText);
    m_language->setAccessibleName(languageText);
}

void SettingsView::showValues()
{
    const QSignalBlocker noCount(m_concurrent);
    const QSignalBlocker noToggle(m_autoStart);
    // Text that is being typed is not taken away because another setting was set.
    if (!m_folder->hasFocus() || !m_folder->isModified())
        m_folder->setText(m_settings.downloadFolderPath.value());
    m_concurrent->setValue(static_cast<int>(std::clamp<qint64>(m_settings.maxConcurrentDownloads.value(), 1, 10)));
    m_autoStart->setChecked(m_settings.autoStartDownloads.value());
    m_language->setCurrentIndex(m_language->findData(static_cast<int>(m_settings.language.value())));
}

void SettingsView::chooseFolder()
{
    auto* dialog = new QFileDialog(this, m_folderLabel->text(), m_settings.downloadFolderPath.value());
    dialog->setObjectName(QStringLiteral("folderDialog"));
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QFileDialog::fileSelected, this, &SettingsView::useFolder);
    dialog->open();
}

void SettingsView::useFolder(const QString& path)
{
    m_folder->setModified(false);
    if (path.isEmpty() || path == m_settings.downloadFolderPath.value())
        showValues();
    else
        m_settings.downloadFolderPath.set(path);
}

} // namespace vormel
