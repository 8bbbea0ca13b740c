#include "PlainList.h"

#include "engine/export/PdfExporter.h"
#include "engine/model/Controls.h"
#include "engine/model/LayoutReport.h"
#include "engine/model/Section.h"
#include "engine/render/PageDocument.h"

#include "core/Object.h"

#include <QElapsedTimer>

using namespace kordel;
using namespace kordel::engine;

namespace {

const QStringList kFields{"number", "name", "city", "phone", "amount", "date"};

// Hands out the rows through the run's FetchData event.
class BenchRows : public Object {
public:
  BenchRows(std::shared_ptr<LayoutReport> report, int rows) : report_(std::move(report)), rows_(rows) {}

protected:
  const MemberTable &memberTable() const override {
    static const MemberTable table{{
        method<BenchRows>("ActiveReport_DataInitialize",
                          [](BenchRows &b, Args &) {
                            for (const QString &name : kFields)
                              b.report_->fields()->add(name);
                            b.next_ = 0;
                            return Variant();
                          }),
        method<BenchRows>(
            "ActiveReport_FetchData",
            [](BenchRows &b, Args &a) {
              if (b.next_ >= b.rows_)
                return Variant();
              const int i = b.next_++;
              const auto &fields = *b.report_->fields();
              fields.item(Variant(0))->value = Variant(i + 1);
              fields.item(Variant(1))->value = QStringLiteral("Customer number %1").arg(i + 1);
              fields.item(Variant(2))->value = QStringLiteral("City %1").arg(i / 500);
              fields.item(Variant(3))->value = QStringLiteral("+46 40 %1").arg(100000 + i);
              fields.item(Variant(4))->value = Variant((i % 997) * 12.5);
              fields.item(Variant(5))->value =
                  QStringLiteral("2026-%1-%2").arg(1 + i % 12, 2, 10, QChar('0')).arg(1 + i % 28, 2, 10, QChar('0'));
              a[0] = Variant(false);
              return Variant();
            }),
    }};
    return table;
  }

private:
  std::shared_ptr<LayoutReport> report_;
  int rows_;
  int next_ = 0;
};

std::shared_ptr<LayoutReport> listReport() {
  auto report = LayoutReport::create();
  auto &sections = *report->sections();
  auto &pageHeader = *sections.add("PageHeader", 0, SectionType::PageHeader, 300);
  auto &group = *sections.add("GroupHeader1", 1, SectionType::GroupHeader, 300);
  auto &detail = *sections.add("Detail", 2, SectionType::Detail, 250);
  auto &pageFooter = *sections.add("PageFooter", 3, SectionType::PageFooter, 300);
  group.dataField = "city";
  const float widths[] = {900, 2600, 1600, 1800, 1300, 1300};
  float left = 0;
  for (int i = 0; i < kFields.size(); ++i) {
    auto label = std::static_pointer_cast<Label>(pageHeader.controls()->add("DDActiveReports2.Label"));
    label->caption = kFields[i];
    label->left = left;
    label->width = widths[i];
    auto field = std::static_pointer_cast<Field>(detail.controls()->add("DDActiveReports2.Field"));
    field->dataField = kFields[i];
    field->left = left;
    field->width = widths[i];
    field->canGrow = false;
    left += widths[i];
  }
  auto city = std::static_pointer_cast<Field>(group.controls()->add("DDActiveReports2.Field"));
  city->dataField = "city";
  city->width = 3000;
  auto number = std::static_pointer_cast<Field>(pageFooter.controls()->add("DDActiveReports2.Field"));
  number->countKind = 4;
  number->runningKind = 2;
  number->width = 800;
  auto total = std::static_pointer_cast<Field>(pageFooter.controls()->add("DDActiveReports2.Field"));
  total->countKind = 4;
  total->left = 1000;
  total->width = 800;
  return report;
}

} // namespace

PlainListRun runPlainList(int rows, const QString &pdf) {
  PlainListRun result;
  result.report = listReport();
  auto source = std::make_shared<BenchRows>(result.report, rows);
  result.report->setEventSink(source);
  QElapsedTimer timer;
  timer.start();
  result.report->run();
  result.runSeconds = double(timer.nsecsElapsed()) / 1e9;
  timer.restart();
  PdfExporter().exportDocument(*result.report->pages(), pdf);
  result.exportSeconds = double(timer.nsecsElapsed()) / 1e9;
  result.pages = result.report->pages()->pageCount();
  return result;
}
