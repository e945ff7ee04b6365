#pragma once

#include "model/AppLanguage.h"

#include <QWidget>

namespace vormel {

class AppSettings;
struct FoundTools;
class StyledLabel;
class ToolWatch;

/// What the banner says; empty if nothing that is needed for extraction is missing.
[[nodiscard]] QString missingToolsText(const FoundTools& tools, AppLanguage language);

/// Stands at the foot of the queue page while a tool that extracts archives is missing. Both must outlive it.
class MissingToolsBanner final : public QWidget
{
    Q_OBJECT

public:
    MissingToolsBanner(const ToolWatch& tools, const AppSettings& settings, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void showMissing();

    const ToolWatch& m_tools;
    const AppSettings& m_settings;
    StyledLabel* m_text;
};

} // namespace vormel
