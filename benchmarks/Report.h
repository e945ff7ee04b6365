#pragma once

#include <QJsonObject>
#include <QString>

namespace vormel::bench {

/// The figures of one run: printed as they come, and written as one flat object of numbers at the end.
class Report
{
public:
    /// Reads the figures of earlier runs, so that a partial run replaces only its own.
    explicit Report(QString path);

    /// A figure that is kept, with what it should stay below (0: nothing is asked of it).
    void add(const QString& name, double value, double reach = 0);
    /// A line for the reader only.
    void note(const QString& line) const;
    void write() const;

private:
    QString m_path;
    QJsonObject m_figures;
};

} // namespace vormel::bench
