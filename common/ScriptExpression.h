#pragma once

#include "hostapi/Classes.h"

#include <QString>

namespace kordel::addin {

// Rewrites the field references of an expression between the local and
// the internal form of their paths: [path], Value("path"), Text("path")
// against fields, and ActiveUser.Record.Value("path") against the active
// user's record. mode goes to Fields.TranslatePath as it is (0 local to
// internal, 1 back). Unknown references stay as they are; nothing fails.
QString ConvertScriptExpression(const std::shared_ptr<hostapi::Fields> &fields, const QString &expression, int mode);

} // namespace kordel::addin
