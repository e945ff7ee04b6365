#include "text/SmallLetters.h"

namespace vormel {

QString withSmallLetters(QString text)
{
    for (QChar& c : text) {
        if (c >= u'A' && c <= u'Z')
            c = QChar(c.unicode() - u'A' + u'a');
    }
    return text;
}

} // namespace vormel
