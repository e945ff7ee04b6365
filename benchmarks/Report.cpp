#include "Report.h"

#include "platform/storage/WholeFile.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QTextStream>

using namespace Qt::StringLiterals;

namespace vormel::bench {

Report::Report(QString path)
    : m_path(std::move(path))
{
    if (const auto earlier = readWholeFile(m_path, 1024 * 1024))
        m_figures = QJsonDocument::fromJson(*earlier).object();
}

void Report::add(const QString& name, double value, double reach)
{
    m_figures.insert(name, value);
    QString line = u"  %1 %2"_s.arg(name, -32).arg(value, 10, 'f', 3);
    if (reach > 0)
        line += u"   reach %1: %2"_s.arg(reach).arg(value <= reach ? u"held"_s : u"MISSED"_s);
    note(line);
}

void Report::note(const QString& line) const
{
    QTextStream(stdout) << line << Qt::endl;
}

void Report::write() const
{
    QDir().mkpath(QFileInfo(m_path).path());
    if (!replaceWholeFile(m_path, QJsonDocument(m_figures).toJson()))
        note(u"The results could not be written to "_s + m_path);
}

} // namespace vormel::bench
