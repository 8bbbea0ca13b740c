#pragma once

#include <QString>
#include <QStringList>

namespace kordel::test {

// The office suite's converter (soffice), or empty when it is not
// installed.
QString officeConverter();

// Converts the file with the office suite in its headless mode into the
// folder, in the format ("pdf", "txt:Text", "csv:..."), reading it with the
// input filter when one is given. The path of the converted file, or empty
// when the conversion failed, with a test failure saying why.
QString convertWithOffice(const QString &file, const QString &format, const QString &folder,
                          const QString &inputFilter = {});

} // namespace kordel::test
