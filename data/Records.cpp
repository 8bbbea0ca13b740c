#include "data/Records.h"

#include "common/ApplicationManager.h"
#include "common/Globals.h"
#include "core/Error.h"
#include "core/Format.h"
#include "data/RowBuffer.h"
#include "document/Page.h"
#include "document/Pages.h"
#include "document/Report.h"
#include "document/SortFields.h"
#include "hostapi/Application.h"
#include "hostapi/Classes.h"
#include "hostapi/FieldTypes.h"
#include "hostapi/Filters.h"
#include "hostapi/Pool.h"
#include "hostapi/Records.h"
#include "hostapi/ReportContext.h"

namespace kordel::addin {

namespace {

const QString kSource = QStringLiteral("Records");
constexpr int kSortKeyLength = 64;

template <class T> std::shared_ptr<T> create(const char *progId) {
  auto made = std::dynamic_pointer_cast<T>(CreateObject(QString::fromLatin1(progId)));
  if (!made)
    raiseError(ErrorNumber::CannotCreateObject, kSource, QString::fromLatin1(progId));
  return made;
}

bool isOneOf(int value, std::initializer_list<int> set) {
  for (int member : set)
    if (value == member)
      return true;
  return false;
}

// The buffer column a field type gets: its type and size, or none for the
// types that have no value to sort on, so that sorting on them fails.
bool columnFor(const hostapi::Field &field, int &type, int &size) {
  const int t = field.type();
  if (isOneOf(t, {21, 27}))
    return false;
  if (isOneOf(t, {1, 5, 15, 20, 23})) {
    type = int(ColumnType::BigInt);
    size = 0;
  } else if (isOneOf(t, {6, 8, 9})) {
    type = int(ColumnType::Double);
    size = 0;
  } else if (isOneOf(t, {2, 3, 4, 13, 14, 26, 28})) {
    type = int(ColumnType::VarChar);
    // A sort key is never longer than 64; a text without a size takes that.
    size = field.size() > kSortKeyLength || field.size() <= 0 ? kSortKeyLength : field.size();
  } else if (isOneOf(t, {10, 11, 12, 25})) {
    type = int(ColumnType::VarChar);
    size = 32;
  } else {
    type = int(ColumnType::VarChar);
    size = kSortKeyLength;
  }
  return true;
}

// The field type that decides how a value of the field is copied: a
// formula's by the type of its value, and anything whose value is a date
// as a date.
int copyTypeFor(const hostapi::Field &field) {
  const int type = field.type();
  const int dataType = field.dataType();
  if (type == hostapi::FieldType::Formula) {
    if (isOneOf(dataType, {hostapi::DataType::Long, hostapi::DataType::Boolean}))
      return hostapi::FieldType::Integer;
    if (isOneOf(dataType, {hostapi::DataType::Double, hostapi::DataType::Currency}))
      return hostapi::FieldType::Decimal;
    if (dataType == hostapi::DataType::Date)
      return hostapi::FieldType::Date;
    return type;
  }
  return dataType == hostapi::DataType::Date ? hostapi::FieldType::Date : type;
}

} // namespace

Records::Records() = default;
Records::~Records() = default;

// ---- Opening ----

void Records::OpenRecords(const std::shared_ptr<Page> &page, const std::shared_ptr<hostapi::ReportContext> &context,
                          const std::shared_ptr<hostapi::Pool> &parentPool) {
  recordIndex_ = 0;
  lastRecord_.reset();
  context_ = context;
  page_ = page;
  parentPool_ = parentPool;
  ResolveLinkFields();
  CreateBuffer();
  BuildSortExpression();
  BuildView();
  FindSubFilter();

  result_ = create<hostapi::Records>(hostapi::kRecordsProgId);
  const auto filter = SourceFilter();
  result_->open(Variant(ObjectRef(page_->Class())), filter, view_, 0);
  const int count = result_->count();
  buffer_->Reserve(count);
  for (int i = 0; i < count; ++i) {
    const auto record = result_->at(i);
    buffer_->AddNew();
    CopySortFields(*record, *buffer_);
  }
  resultPool_ = result_->pool();
  if (buffer_->RecordCount() > 0) {
    buffer_->SetSort(sortExpression_);
    buffer_->Update();
    buffer_->MoveFirst();
  }
  OpenSubRecords();
}

void Records::ResolveLinkFields() {
  const auto cls = page_->Class();
  if (!cls)
    raiseError(ErrorNumber::ObjectNotSet, kSource,
               QStringLiteral("The page \"%1\" has no class in this database").arg(page_->Name()));
  idField_ = QStringLiteral("id") + cls->name();
  parentLinkField_.clear();
  const auto parent = page_->Parent();
  if (!parent)
    return;
  const QString source = page_->Source();
  const QString parentSource = parent->Source();
  const auto reportClass = page_->Report()->Class();
  QString parentClass;
  if (parent->Class()->name() == reportClass->name()) {
    parentClass = reportClass->name();
  } else {
    const auto step = reportClass->fields()->lookup(parentSource, hostapi::LookupMode::Either);
    if (!step)
      raiseError(
          ErrorNumber::ObjectNotSet, kSource,
          QStringLiteral("The page \"%1\" follows \"%2\", which is no field path").arg(parent->Name(), parentSource));
    parentClass = step->relatedField()->fieldClass()->name();
  }

  // The path from the parent's class: the page's source without the
  // parent's source and its dot, the first occurrence only. Under the top
  // page the text looked for may be a lone dot.
  QString relative = source;
  const QString prefix = parentSource + u'.';
  const qsizetype at = relative.indexOf(prefix, 0, Qt::CaseInsensitive);
  if (at >= 0)
    relative.remove(at, prefix.size());

  // Walk it forward and note the way back.
  const auto classes = CurrentApplication()->classes();
  QStringList back;
  QString current = parentClass;
  for (const QString &part : relative.split(u'.')) {
    const auto field = classes->item(current)->fields()->item(part);
    const auto related = field->relatedField();
    if (!related)
      raiseError(ErrorNumber::ObjectNotSet, kSource,
                 QStringLiteral("The page \"%1\" follows \"%2\", which is no relation").arg(page_->Name(), part));
    back.prepend(related->name());
    current = related->fieldClass()->name();
  }
  parentLinkField_ = back.join(u'.') + QStringLiteral(".id") + parentClass;
}

void Records::CreateBuffer() {
  bufferColumns_.clear();
  QStringList names;
  const auto sortFields = page_->SortFields();
  for (int i = 1; i <= sortFields->Count(); ++i)
    names << sortFields->Item(i)->Name;
  if (!parentLinkField_.isEmpty() && !sortFields->Exists(parentLinkField_))
    names << parentLinkField_;
  if (!sortFields->Exists(idField_))
    names << idField_;

  const auto fields = page_->Class()->fields();
  for (const QString &name : names) {
    const auto field = fields->lookup(name, hostapi::LookupMode::Either);
    if (!field)
      raiseError(ErrorNumber::ObjectNotSet, kSource,
                 QStringLiteral("\"%1\" is no field of the class of the page \"%2\"").arg(name, page_->Name()));
    const int copyType = copyTypeFor(*field);
    const SortKey key = isOneOf(copyType, {1, 5, 15, 20, 23})  ? SortKey::WholeNumber
                        : isOneOf(copyType, {6, 8, 9})         ? SortKey::Number
                        : copyType == hostapi::FieldType::Date ? SortKey::Date
                                                               : SortKey::Text;
    Column column{name, key, false, 0, 0};
    column.inBuffer = columnFor(*field, column.bufferType, column.definedSize);
    bufferColumns_.push_back(column);
  }
  buffer_ = NewBuffer();
  idColumn_ = buffer_->ColumnIndex(idField_);
}

std::unique_ptr<RowBuffer> Records::NewBuffer() const {
  auto buffer = std::make_unique<RowBuffer>();
  for (const Column &column : bufferColumns_)
    if (column.inBuffer)
      buffer->AppendField(column.path, ColumnType(column.bufferType), column.definedSize);
  buffer->Open();
  return buffer;
}

void Records::BuildSortExpression() {
  sortExpression_.clear();
  const auto sortFields = page_->SortFields();
  for (int i = 1; i <= sortFields->Count(); ++i) {
    const auto sortField = sortFields->Item(i);
    if (!sortExpression_.isEmpty())
      sortExpression_ += QStringLiteral(", ");
    sortExpression_ += u'[' + sortField->Name + QStringLiteral("] ") +
                       (sortField->SortOrder == kSortDescending ? QStringLiteral("DESC") : QStringLiteral("ASC"));
  }
}

void Records::FindSubFilter() {
  subFilter_.reset();
  if (!parentPool_)
    return;
  for (const QString &key : {page_->Guid(), page_->Name()}) {
    const Variant value = context_->getProperty(key);
    if (value.isObject())
      subFilter_ = std::dynamic_pointer_cast<hostapi::Filter>(value.rawObject());
    if (subFilter_)
      return;
  }
}

std::shared_ptr<hostapi::Filter> Records::SourceFilter() {
  std::shared_ptr<hostapi::Filter> filter;
  if (!parentPool_) {
    const Variant range = context_->range();
    std::shared_ptr<hostapi::Pool> pool;
    if (range.isObject()) {
      const ObjectRef &object = range.rawObject();
      filter = std::dynamic_pointer_cast<hostapi::Filter>(object);
      pool = std::dynamic_pointer_cast<hostapi::Pool>(object);
      if (const auto selection = std::dynamic_pointer_cast<hostapi::Selection>(object))
        pool = selection->pool();
    } else {
      // Any plain value is one id, an empty one too.
      pool = create<hostapi::Pool>(hostapi::kPoolProgId);
      pool->add(range.toLong());
    }
    if (pool && !filter) {
      filter = create<hostapi::Filter>(hostapi::kFilterProgId);
      filter->addCondition(idField_, Variant(ObjectRef(pool)), hostapi::ConditionOp::InPool, 0);
    }
  } else {
    filter = create<hostapi::Filter>(hostapi::kFilterProgId);
    filter->addCondition(parentLinkField_, Variant(ObjectRef(parentPool_)), hostapi::ConditionOp::InPool, 0);
  }
  if (!filter)
    raiseError(ErrorNumber::UserMessage, kSource, GetMessage(QStringLiteral("Records.InvalidSource")));
  if (subFilter_ && !subFilter_->empty()) {
    filter->addCondition(QString(), Variant(ObjectRef(subFilter_)), hostapi::ConditionOp::EmbeddedFilter, 0);
    filter->addOperator(hostapi::FilterOperator::And);
  }
  return filter;
}

void Records::CopySortFields(hostapi::Record &record, RowBuffer &buffer) const {
  int bufferIndex = 0;
  for (const Column &column : bufferColumns_) {
    if (!column.inBuffer)
      continue;
    const int index = bufferIndex++;
    switch (column.key) {
    case SortKey::WholeNumber: {
      const Variant value = record.value(column.path);
      buffer.SetValue(index, Variant(value.isNull() ? 0 : value.toLong()));
      break;
    }
    case SortKey::Number: {
      const Variant value = record.value(column.path);
      buffer.SetValue(index, Variant(value.isNull() ? 0.0 : value.toDouble()));
      break;
    }
    case SortKey::Date:
      // Text order is time order; a date without text stays Null.
      if (!record.text(column.path).isEmpty())
        buffer.SetValue(index, formatValue(record.value(column.path), QStringLiteral("yyyy-mm-dd hh:nn:ss")));
      break;
    case SortKey::Text: buffer.SetValue(index, record.text(column.path).left(kSortKeyLength)); break;
    }
  }
}

void Records::OpenSubRecords() {
  subRecords_.clear();
  const auto pages = page_->Pages();
  for (int i = 1; i <= pages->Count(); ++i) {
    const auto subPage = pages->Item(i);
    auto sub = std::make_shared<Records>();
    sub->OpenRecords(subPage, context_, resultPool_->clone());
    subRecords_.emplace_back(subPage->Guid(), std::move(sub));
  }
}

// ---- The parent filter ----

void Records::SetParentFilter(const std::shared_ptr<hostapi::Pool> &pool) {
  if (parentLinkField_.isEmpty())
    return;
  parentBuffer_ = NewBuffer();
  parentResultPool_ = create<hostapi::Pool>(hostapi::kPoolProgId);
  if (buffer_->RecordCount() != 0) {
    const QString prefix = u'[' + parentLinkField_ + QStringLiteral("] = ");
    for (const int parentId : pool->ids()) {
      buffer_->SetFilter(prefix + QString::number(parentId));
      while (!buffer_->EOF()) {
        const auto record = RecordOf(buffer_->Value(idColumn_).toLong());
        parentBuffer_->AddNew();
        CopySortFields(*record, *parentBuffer_);
        parentResultPool_->add(record->id());
        buffer_->MoveNext();
      }
    }
    buffer_->SetFilter(QString());
  }
  if (parentBuffer_->RecordCount() > 0) {
    parentBuffer_->SetSort(sortExpression_);
    parentBuffer_->MoveFirst();
  }
  recordIndex_ = 0;
}

void Records::ClearParentFilter() { parentBuffer_.reset(); }

std::shared_ptr<hostapi::Pool> Records::GetPool() const { return parentBuffer_ ? parentResultPool_ : resultPool_; }

// ---- Navigation ----

RowBuffer &Records::ActiveBuffer() const {
  if (parentBuffer_)
    return *parentBuffer_;
  if (!buffer_)
    raiseError(ErrorNumber::ObjectNotSet, kSource, QStringLiteral("The cursor is not open"));
  return *buffer_;
}

bool Records::BeginningOfFile() const { return ActiveBuffer().BOF(); }
bool Records::EndOfFile() const { return ActiveBuffer().EOF(); }
std::int32_t Records::RecordCount() const { return ActiveBuffer().RecordCount(); }

std::shared_ptr<hostapi::Record> Records::Record() const {
  const int id = ActiveBuffer().Value(idColumn_).toLong();
  if (!lastRecord_ || id != lastId_) {
    lastRecord_ = RecordOf(id);
    lastId_ = id;
  }
  return lastRecord_;
}

std::shared_ptr<hostapi::Record> Records::RecordOf(int id) const {
  // The first row of the id: an id the engine returns twice gives two
  // rows of one record, the record of its first row.
  int low = 0;
  int high = result_->count();
  while (low < high) {
    const int middle = low + (high - low) / 2;
    if (result_->idAt(middle) < id)
      low = middle + 1;
    else
      high = middle;
  }
  return low < result_->count() && result_->idAt(low) == id ? result_->at(low) : nullptr;
}

void Records::MoveFirst() {
  ActiveBuffer().MoveFirst();
  recordIndex_ = 0;
}

void Records::MoveLast() {
  RowBuffer &buffer = ActiveBuffer();
  buffer.MoveLast();
  recordIndex_ = buffer.RecordCount();
}

void Records::MoveNext() {
  ActiveBuffer().MoveNext();
  ++recordIndex_;
}

void Records::MovePrevious() {
  ActiveBuffer().MovePrevious();
  --recordIndex_;
}

} // namespace kordel::addin
