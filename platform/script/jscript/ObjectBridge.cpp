#include "script/jscript/ObjectBridge.h"

#include "script/jscript/JsContext.h"

namespace kordel::script::js {

namespace {

constexpr int kArgumentNotOptional = 449;

// What a property that takes arguments raises when read without them.
bool needsArguments(const Error &error) {
  return error.number() == ErrorNumber::WrongArgumentCount || error.number() == kArgumentNotOptional;
}

} // namespace

ContextBridge::~ContextBridge() {
  if (JsContext *engine = context())
    engine->bridgeDeleted(this);
}

ObjectBridge::ObjectBridge(std::shared_ptr<BridgeLink> link, ObjectRef object)
    : ContextBridge(std::move(link)), key_(object.get()), object_(std::move(object)) {}

ObjectBridge::~ObjectBridge() { detach(); }

void ObjectBridge::detach() {
  if (JsContext *engine = context())
    engine->forgetBridgeOf(key_, this);
  object_.reset();
}

Object &ObjectBridge::target() const {
  if (!object_)
    raiseError(ErrorNumber::ObjectRequired, QStringLiteral("JScript"), QStringLiteral("The object is gone"));
  return *object_;
}

QJSValue ObjectBridge::member(const QString &name) {
  JsContext &engine = *context();
  try {
    if (target().isMethod(name))
      return engine.helpers().callable;
    Args none;
    try {
      return engine.toJs(target().call(name, none));
    } catch (const Error &error) {
      if (!needsArguments(error))
        throw;
      return engine.helpers().callable;
    }
  } catch (...) {
    engine.throwPendingIntoScript();
    return {};
  }
}

void ObjectBridge::setMember(const QString &name, const QJSValue &value) {
  JsContext &engine = *context();
  try {
    Args none;
    target().set(name, none, engine.toVariant(value));
  } catch (...) {
    engine.throwPendingIntoScript();
  }
}

QJSValue ObjectBridge::invoke(const QString &name, const QJSValue &arguments) {
  JsContext &engine = *context();
  try {
    Args args = engine.toArgs(arguments);
    return engine.toJs(target().call(name, args));
  } catch (...) {
    engine.throwPendingIntoScript();
    return {};
  }
}

bool ObjectBridge::hasMember(const QString &name) const {
  try {
    return target().hasMember(name);
  } catch (...) {
    // an object that cannot answer has no such member
    return false;
  }
}

QJSValue ObjectBridge::primitive() {
  JsContext &engine = *context();
  try {
    const QString plain = QStringLiteral("[object %1]").arg(target().typeName());
    Args none;
    try {
      const Variant value = target().call(QString(), none);
      return value.isObject() ? QJSValue(plain) : engine.toJs(value);
    } catch (const Error &error) {
      if (error.number() != ErrorNumber::NoSuchMember && !needsArguments(error))
        throw;
      return QJSValue(plain);
    }
  } catch (...) {
    engine.throwPendingIntoScript();
    return {};
  }
}

QJSValue ObjectBridge::enumerate() {
  JsContext &engine = *context();
  try {
    return engine.adoptBridge(new EnumeratorBridge(engine.bridgeLink(), target().enumerate()));
  } catch (...) {
    engine.throwPendingIntoScript();
    return {};
  }
}

QString ObjectBridge::typeName() const { return object_ ? object_->typeName() : QStringLiteral("Object"); }

EnumeratorBridge::EnumeratorBridge(std::shared_ptr<BridgeLink> link, std::unique_ptr<Enumerator> enumerator)
    : ContextBridge(std::move(link)), enumerator_(std::move(enumerator)) {}

QJSValue EnumeratorBridge::next() {
  JsContext &engine = *context();
  try {
    Variant value;
    if (!enumerator_->next(value))
      return engine.helpers().end;
    return engine.toJs(value);
  } catch (...) {
    engine.throwPendingIntoScript();
    return {};
  }
}

QJSValue HostBridge::createObject(const QString &progId) {
  try {
    return context_.toJs(Variant(context_.createObject(progId)));
  } catch (...) {
    context_.throwPendingIntoScript();
    return {};
  }
}

} // namespace kordel::script::js
