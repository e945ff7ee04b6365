#include "resolvers/containers/ContainerForm.h"

#include "resolvers/containers/TagPieces.h"
#include "text/FormFields.h"

#include <QHash>

using namespace Qt::StringLiterals;

namespace vormel {

FormFields parseFileCryptHiddenInputs(const QString& html)
{
    const QStringView page{html};
    TagPieces types = quotedAttributes(page, u"type=");
    std::erase_if(types, [](const TagPiece& type) { return type.value.compare(u"hidden", Qt::CaseInsensitive) != 0; });
    TagPieces names = quotedAttributes(page, u"name=");
    std::erase_if(names, [](const TagPiece& name) { return name.value.isEmpty(); });

    FormFields fields;
    QHash<QString, std::size_t> places;
    for (const TagPieces& input : piecesOfOneTag(page, {tagOpenings(page, u"<input"), std::move(types),
                                                        std::move(names), quotedAttributes(page, u"value=")})) {
        const QString name = input[2].value.toString();
        const auto place = places.constFind(name);
        if (place != places.constEnd()) {
            fields[*place].second = input[3].value.toString();
            continue;
        }
        places.insert(name, fields.size());
        fields.emplace_back(name, input[3].value.toString());
    }
    return fields;
}

QByteArray containerPasswordBody(const QString& html, const QString& password)
{
    FormFields fields = parseFileCryptHiddenInputs(html);
    setField(fields, u"password"_s, password);
    return encodeFormFields(fields);
}

} // namespace vormel
