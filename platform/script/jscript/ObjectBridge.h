#pragma once

#include "core/Object.h"

#include <QJSValue>
#include <QObject>

#include <memory>

namespace kordel::script::js {

class JsContext;

// Shared by the bridges of one engine. The engine clears it when it goes;
// bridges still waiting for their deleteLater then touch nothing.
struct BridgeLink {
  JsContext *context = nullptr;
};

// A QObject that scripts reach and the script engine's collector owns. The
// collector does not delete what it drops at once but with deleteLater,
// which waits for the event loop; the engine therefore tells a dropped
// bridge to let go of what it holds (detach) as soon as it notices.
class ContextBridge : public QObject {
  Q_OBJECT
public:
  explicit ContextBridge(std::shared_ptr<BridgeLink> link) : link_(std::move(link)) {}
  ~ContextBridge() override;

  virtual void detach() = 0;

protected:
  // The engine; null once it is gone.
  JsContext *context() const { return link_->context; }

private:
  std::shared_ptr<BridgeLink> link_;
};

// The QObject behind a host object's proxy in scripts (see BridgeScript.cpp
// for the proxy's side). Each method catches every exception at its
// boundary and hands it to the script (JsContext::throwPendingIntoScript).
class ObjectBridge final : public ContextBridge {
  Q_OBJECT
public:
  ObjectBridge(std::shared_ptr<BridgeLink> link, ObjectRef object);
  ~ObjectBridge() override;

  const ObjectRef &object() const { return object_; }
  void detach() override;

  // obj.Name: a property's value; the marker "callable" for a method, and
  // for a property that raises 450 or 449 without arguments (an indexed
  // property such as Item(key)), which the script then calls.
  Q_INVOKABLE QJSValue member(const QString &name);
  // obj.Name = value
  Q_INVOKABLE void setMember(const QString &name, const QJSValue &value);
  // obj.Name(args...), and obj(args...) with an empty name.
  Q_INVOKABLE QJSValue invoke(const QString &name, const QJSValue &arguments);
  Q_INVOKABLE bool hasMember(const QString &name) const;
  // The value of the default member when it gives a plain value without
  // arguments, else "[object TypeName]": what the object is as text.
  Q_INVOKABLE QJSValue primitive();
  // A fresh enumerator over the collection.
  Q_INVOKABLE QJSValue enumerate();
  Q_INVOKABLE QString typeName() const;

private:
  // The object; 424 once the bridge has let go of it.
  Object &target() const;

  const Object *key_; // the object as the engine's cache knows it
  ObjectRef object_;
};

// One walk over a collection; next() gives the next element or the marker
// "end".
class EnumeratorBridge final : public ContextBridge {
  Q_OBJECT
public:
  EnumeratorBridge(std::shared_ptr<BridgeLink> link, std::unique_ptr<Enumerator> enumerator);

  void detach() override { enumerator_.reset(); }

  Q_INVOKABLE QJSValue next();

private:
  std::unique_ptr<Enumerator> enumerator_;
};

// The engine's own services to the bridge script: ActiveXObject.
class HostBridge final : public QObject {
  Q_OBJECT
public:
  explicit HostBridge(JsContext &context) : context_(context) {}

  Q_INVOKABLE QJSValue createObject(const QString &progId);

private:
  JsContext &context_;
};

} // namespace kordel::script::js
