#pragma once

#include <QByteArray>
#include <QString>

namespace kordel::engine::xls {

// The smallest stream that the regular sector allocation holds; shorter
// streams would belong in the mini stream, which this writer does not make.
constexpr qsizetype kMiniStreamCutoff = 4096;

// A compound document (version 3, sectors of 512 bytes) holding one stream
// under the root storage. A stream shorter than the mini stream cutoff is
// padded with zeros up to it, so every stream lives in regular sectors.
QByteArray compoundFileWithStream(const QString &streamName, QByteArray stream);

} // namespace kordel::engine::xls
