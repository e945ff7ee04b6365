#pragma once

#include "model/AppLanguage.h"

#include <QDialog>

class QLabel;

namespace vormel {

class AppSettings;
class SheetButton;
class ToolWatch;
class WebBrowser;

/// Which program this is, under which licence, and what it found on this machine, to be copied into a report.
class AboutWindow final : public QDialog
{
    Q_OBJECT

public:
    /// What it asks. All outlive it.
    struct Ports
    {
        const AppSettings& settings;
        const ToolWatch& tools;
        const WebBrowser& web;
    };
    AboutWindow(const Ports& ports, QWidget* parent);

private:
    void setUpParts();
    void layOut();
    void showTexts();
    [[nodiscard]] QString surroundings(AppLanguage language) const;
    void copy() const;

    Ports m_ports;
    QLabel* m_name;
    QLabel* m_version;
    QLabel* m_kind;
    QLabel* m_licence;
    QLabel* m_surroundings;
    SheetButton* m_copy;
    SheetButton* m_close;
};

} // namespace vormel
