#pragma once

#include "hostapi/Classes.h"

#include <QStringList>

#include <memory>

namespace kordel::addin {

class StringCollection;

// One face of the window that inserts fields into a layout section: it
// asks what to insert and where, and keeps the answer. The window only
// forwards to the face that is active.
class IFormFieldsPage {
public:
  virtual ~IFormFieldsPage() = default;

  // The section active in the designer, "" when none.
  virtual void SetActiveSectionName(const QString &name) = 0;
  // The chosen section of the fields.
  virtual QString FieldSection() const = 0;
  // The chosen section of the labels; "" for no labels.
  virtual QString LabelSection() const = 0;
  // The fields of the page's class.
  virtual void SetNuvoFields(std::shared_ptr<hostapi::Fields> fields) = 0;
  // One entry per field or expression, in the order of the list; the same
  // entry may stand twice.
  virtual QStringList NewFieldNames() const = 0;
  // The sections that can take fields.
  virtual void SetSectionNames(std::shared_ptr<StringCollection> names) = 0;
  // Makes this face the active one of its window.
  virtual void Activate() = 0;
  // Fills the controls; ok tells whether it went well.
  virtual void Initialize(bool &ok) = 0;
  // Takes over the answer; ok lets the window close.
  virtual void Validate(bool &ok) = 0;
};

} // namespace kordel::addin
