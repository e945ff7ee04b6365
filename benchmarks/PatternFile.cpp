#include "PatternFile.h"

#include "Measure.h"
#include "sites/PatternContent.h"

#include <QFile>

#include <algorithm>
#include <vector>

using namespace Qt::StringLiterals;

namespace vormel::bench {

void writePatternFile(const QString& path, qint64 size)
{
    constexpr qint64 blockSize = qint64{4} * 1024 * 1024;
    const sites::PatternContent content(1, size);
    std::vector<char> block(blockSize);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        giveUp(u"cannot write "_s + path);
    for (qint64 at = 0; at < size; at += blockSize) {
        content.fill(at, block);
        const qint64 length = std::min(blockSize, size - at);
        if (file.write(block.data(), length) != length)
            giveUp(u"cannot write all of "_s + path);
    }
}

} // namespace vormel::bench
