// Fuzz entry: a result file as the teacher's overview meets it in a folder
// anybody may have written into. The reader never takes what QJsonDocument
// would refuse, and what it takes as a result reads back the same after it
// has been written again.
#include "result/JsonTree.h"
#include "result/ResultRecord.h"

#include <QJsonDocument>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    QJsonParseError error;
    QJsonDocument::fromJson(bytes, &error);
    if (JsonTree::parse(bytes) && error.error != QJsonParseError::NoError)
        std::abort();
    const std::optional<ResultRecord> record = ResultRecord::fromJson(bytes);
    if (!record)
        return 0;
    if (record->tasks < record->correct)
        std::abort();
    const QByteArray written = record->toJson();
    const std::optional<ResultRecord> again = ResultRecord::fromJson(written);
    if (!again || again->toJson() != written)
        std::abort();
    return 0;
}
