#pragma once

#include "model/AppLanguage.h"

#include <QList>
#include <QScrollArea>

namespace vormel {

class AppSettings;
class HelpFeatureRow;
class StyledLabel;

/// Tells on one scrolling page what the program does, also for users of Filestore, whose domain it is given; in the
/// language of the settings, which must outlive it.
class HelpView final : public QScrollArea
{
    Q_OBJECT

public:
    HelpView(const AppSettings& settings, QString filestore, QWidget* parent = nullptr);

private:
    void nameParts();
    void layOut();
    [[nodiscard]] QWidget* makeFeatures(QWidget* parent);
    [[nodiscard]] QWidget* makeRequirement(QWidget* parent);
    void showTexts();

    const AppSettings& m_settings;
    QString m_filestore;
    StyledLabel* m_name;
    StyledLabel* m_version;
    StyledLabel* m_kind;
    StyledLabel* m_description;
    StyledLabel* m_heading;
    StyledLabel* m_requirement;
    QList<HelpFeatureRow*> m_features;
};

} // namespace vormel
