#include "script/jscript/JsObject.h"

#include "script/jscript/JsContext.h"

namespace kordel::script::js {

JsObject::JsObject(const std::shared_ptr<JsContext> &context, const QJSValue &value)
    : context_(context), handle_(context->hold(value)) {}

JsObject::~JsObject() {
  if (const auto context = context_.lock())
    context->release(handle_);
}

std::shared_ptr<JsContext> JsObject::live() const {
  auto context = context_.lock();
  if (!context)
    raiseError(ErrorNumber::ObjectRequired, QStringLiteral("JScript"),
               QStringLiteral("The script engine of this object is gone"));
  return context;
}

bool JsObject::belongsTo(const JsContext &context) const {
  const auto mine = context_.lock();
  return mine.get() == &context;
}

QJSValue JsObject::value() const { return live()->held(handle_); }

Variant JsObject::call(const QString &name, Args &args) {
  const auto context = live();
  const QJSValue self = context->held(handle_);
  QJSValue scriptArgs = context->qjs().newArray(quint32(args.size()));
  for (std::size_t i = 0; i < args.size(); ++i)
    scriptArgs.setProperty(quint32(i), context->toJs(args[i]));
  return context->callFunction(context->helpers().hostCall, QJSValue(), {self, name, scriptArgs});
}

void JsObject::set(const QString &name, Args &args, const Variant &value) {
  const auto context = live();
  if (!args.empty())
    raiseError(ErrorNumber::NoSuchMember, typeName(),
               QStringLiteral("A script property with arguments cannot be assigned: '%1'").arg(name));
  context->callFunction(context->helpers().hostSet, QJSValue(), {context->held(handle_), name, context->toJs(value)});
}

bool JsObject::hasMember(const QString &name) const {
  const auto context = live();
  return context->callFunction(context->helpers().hostMemberKind, QJSValue(), {context->held(handle_), name})
             .toLong() != 0;
}

bool JsObject::isMethod(const QString &name) const {
  const auto context = live();
  return context->callFunction(context->helpers().hostMemberKind, QJSValue(), {context->held(handle_), name})
             .toLong() == 2;
}

std::unique_ptr<Enumerator> JsObject::enumerate() {
  const auto context = live();
  const Variant values = context->callFunction(context->helpers().valuesOf, QJSValue(), {context->held(handle_)});
  if (!values.isArray())
    raiseError(ErrorNumber::NoSuchMember, typeName(), QStringLiteral("Object doesn't support For Each"));
  return std::make_unique<ListEnumerator>(values.array().elements());
}

} // namespace kordel::script::js
