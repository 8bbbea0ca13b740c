#pragma once

#include <QHash>
#include <QString>
#include <QWidget>

#include <memory>

class QComboBox;
class QGridLayout;
class QGroupBox;
class QLabel;
class QRadioButton;
class QTabBar;
class QTreeWidget;
class QTreeWidgetItem;

namespace kordel::hostapi {
class Filter;
class ReportContext;
} // namespace kordel::hostapi

namespace kordel::addin {

class ContextManager;
class Page;
class Report;

// What a print takes: on the first tab the rows (the list window's
// selection, all its rows or one of its filters, or the one fixed range
// the print was started with), on the second a filter for each sub page,
// of the sub page's class. The last filter chosen for a sub page is kept
// per report and offered again. GetContext turns the choice into the
// context of the run.
class PrintSource : public QWidget {
  Q_OBJECT

public:
  explicit PrintSource(QWidget *parent = nullptr);

  std::shared_ptr<addin::Report> Report() const { return report_; }
  std::shared_ptr<addin::ContextManager> ContextManager() const { return contextManager_; }
  // Filter local name to filter name: what CboFilters1 offers.
  const QHash<QString, QString> &FilterNames() const { return filterNames_; }
  QString NoFilterText() const { return noFilterText_; }
  // Page guid to the text shown for a filter the caller of the print gave.
  const QHash<QString, QString> &ProvidedFilters() const { return providedFilters_; }

  // Fills the control from the report and the manager, which must have
  // been initialised for the print.
  void Activate(std::shared_ptr<addin::Report> report, std::shared_ptr<addin::ContextManager> manager);
  // Checks the choice of rows (user errors -9999), hands the sub page
  // filters to the manager, remembers them, and makes the context.
  std::shared_ptr<hostapi::ReportContext> GetContext();
  void SetupExplorerRange();

  // Handlers.
  void Opt_Click();
  void CboFilters1_Click();
  void LvwMappings_ItemClick();
  void CboFilters2_Click();
  void TabPrintSource_Click();

protected:
  void resizeEvent(QResizeEvent *event) override;

private:
  void buildRowsTab();
  void buildMappingsTab();
  void translateCaptions();
  void loadMappings();
  void storeMappings();
  // The text LvwMappings shows for a sub page's filter.
  QString mappedFilterText(const Page &page);
  std::shared_ptr<hostapi::Filter> providedFilter(const Page &page) const;
  void arrangeControls();
  // Moves a control of the first tab to a row of its grid.
  void placeRowControl(QWidget *control, int row, int column);

  QTabBar *TabPrintSource;
  QGroupBox *FmePrint1;
  QWidget *PicPrint1;
  QGridLayout *rowsGrid_;
  QRadioButton *Opt1;
  QRadioButton *Opt2;
  QRadioButton *Opt3;
  QComboBox *CboFilters1;
  QLabel *lblContextName;
  QGroupBox *FmePrint2;
  QTreeWidget *LvwMappings;
  QComboBox *CboFilters2;

  std::shared_ptr<addin::Report> report_;
  std::shared_ptr<addin::ContextManager> contextManager_;
  QHash<QString, QString> filterNames_;
  QString noFilterText_;
  QHash<QString, QString> providedFilters_;
};

} // namespace kordel::addin
