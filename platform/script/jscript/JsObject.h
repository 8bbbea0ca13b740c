#pragma once

#include "core/Object.h"

#include <QJSValue>

#include <memory>

namespace kordel::script::js {

class JsContext;

// A script object (a function, a plain object) as the host sees it, late
// bound: call(name) reads a property or calls a method with the object as
// "this"; the default member calls the object itself when it is a function.
// Names match exactly, else without regard to case when only one property
// fits. Once the engine is gone every use raises 424.
class JsObject final : public Object {
public:
  JsObject(const std::shared_ptr<JsContext> &context, const QJSValue &value);
  ~JsObject() override;

  QString typeName() const override { return QStringLiteral("Object"); }
  Variant call(const QString &name, Args &args) override;
  void set(const QString &name, Args &args, const Variant &value) override;
  bool hasMember(const QString &name) const override;
  bool isMethod(const QString &name) const override;
  // Walks an iterable script value (an array, a Map, a generator ...).
  std::unique_ptr<Enumerator> enumerate() override;

  // The script value, when it belongs to that context.
  bool belongsTo(const JsContext &context) const;
  QJSValue value() const;

private:
  std::shared_ptr<JsContext> live() const;

  std::weak_ptr<JsContext> context_;
  quint64 handle_;
};

} // namespace kordel::script::js
