#pragma once

#include <QByteArray>
#include <QString>

namespace kordel::engine {

// Appends text as RTF text: the control characters {, } and \ escaped,
// tabs as \tab, other control characters left out, and everything beyond
// ASCII as \uN with "?" for readers that lack Unicode. N is the signed
// 16-bit UTF-16 unit, as RTF wants, so characters beyond the basic plane
// take two.
void appendRtfText(QByteArray &out, const QString &text);

} // namespace kordel::engine
