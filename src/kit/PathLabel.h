#pragma once

#include <QWidget>

namespace vormel {

class StyledLabel;

/// The path with the home folder as "~"; only whole names count as the home folder.
[[nodiscard]] QString withTilde(const QString& path, const QString& home);

/// A caption with the path of a folder. What does not fit is left out in the middle; the whole path is the tool tip.
class PathLabel final : public QWidget
{
    Q_OBJECT

public:
    explicit PathLabel(QWidget* parent);

    void setPath(const QString& path);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void showPath();

    QString m_path;
    StyledLabel* m_label;
};

} // namespace vormel
