#pragma once

#include <QFontDatabase>
#include <QLabel>

namespace vormel {

/// A label in the system's monospaced font, for names of programs and for commands.
class CodeLabel final : public QLabel
{
    Q_OBJECT

public:
    explicit CodeLabel(QWidget* parent)
        : QLabel(parent)
    {
        setTextFormat(Qt::PlainText);
        setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    }
};

} // namespace vormel
