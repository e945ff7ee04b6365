#pragma once

#include "model/AppSettings.h"

#include <QWidget>

namespace vormel {

class CodeLabel;
class GlyphLabel;
class StyledLabel;

/// A row of the table of tools: the tool, what it is good for, and whether it is there. The settings must outlive it.
class ToolRow final : public QWidget
{
    Q_OBJECT

public:
    ToolRow(AppSettings& settings, const QString& name, bool builtIn, const TextPair& formats, QWidget* parent);

    void setAvailable(bool available);

private:
    void layOut(const QString& name);
    void showState();

    AppSettings& m_settings;
    bool m_isBuiltIn;
    bool m_isAvailable = true;
    GlyphLabel* m_there;
    GlyphLabel* m_missing;
    CodeLabel* m_name;
    StyledLabel* m_format;
    StyledLabel* m_builtIn;
    StyledLabel* m_state;
};

} // namespace vormel
