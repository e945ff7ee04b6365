#include "ui/settings/ToolsSection.h"

#include "archive/tools/ToolWatch.h"
#include "ui/settings/ToolRow.h"

using namespace Qt::StringLiterals;

namespace vormel {

ToolsSection::ToolsSection(AppSettings& settings, const ToolWatch& tools, QWidget* parent)
    : Card(settings, u"toolsSection"_s, {u"Available Tools", u"Strumenti disponibili"}, parent)
    , m_tools(tools)
{
    const auto add = [this, &settings](const char16_t* name, bool builtIn, const TextPair& formats) {
        auto* row = new ToolRow(settings, QString::fromUtf16(name), builtIn, formats, this);
        addRow(row);
        return row;
    };
    m_unzip = add(u"unzip", true, {u"ZIP", u"ZIP"});
    add(u"tar", true, {u"TAR, TAR.GZ, TAR.BZ2, TAR.XZ", u"TAR, TAR.GZ, TAR.BZ2, TAR.XZ"});
    m_unrar = add(u"unrar", false, {u"RAR, multi-part RAR", u"RAR, RAR multi-parte"});
    m_rar =
        add(u"rar", false, {u"Rebuild missing volumes from .rev files", u"Ricostruisci volumi mancanti dai file .rev"});
    m_sevenZip = add(u"7z / 7zz", false, {u"7-Zip", u"7-Zip"});
    connect(&tools, &ToolWatch::toolsChanged, this, &ToolsSection::showTools);
    showTools();
}

void ToolsSection::showTools()
{
    const FoundTools& found = m_tools.tools();
    m_unzip->setAvailable(found.unzip);
    m_unrar->setAvailable(found.unrar);
    m_rar->setAvailable(found.rar);
    m_sevenZip->setAvailable(found.sevenZip);
}

} // namespace vormel
