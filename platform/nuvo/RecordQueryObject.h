#pragma once

#include "hostapi/Records.h"

#include <memory>

namespace kordel::nuvo {

class Engine;

// Nuvo.RecordQuery: counts (and lists the ids of) the records of a class
// under a filter, answering with an XML document:
//   <records count="12" class="company" filter="customers"><record id="3"/>...</records>
class RecordQueryObject : public hostapi::RecordQuery {
public:
  explicit RecordQueryObject(std::shared_ptr<Engine> engine) : engine_(std::move(engine)) {}

  QString typeName() const override { return QStringLiteral("RecordQuery"); }

  void open(const Variant &classOrName, const std::shared_ptr<hostapi::Filter> &filter,
            const std::shared_ptr<hostapi::View> &view, int parts, int first, int max) override;
  std::shared_ptr<XmlDocument> result() const override;

protected:
  const MemberTable &memberTable() const override;

private:
  std::shared_ptr<Engine> engine_;
  std::shared_ptr<XmlDocument> result_;
};

} // namespace kordel::nuvo
