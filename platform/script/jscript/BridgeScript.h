#pragma once

#include <QJSEngine>
#include <QJSValue>
#include <QString>

namespace kordel::script::js {

// The functions and markers that the bridge script hands back to C++. They
// live in the script's closure and are not reachable from the global scope.
struct BridgeHelpers {
  QJSValue callable;         // marker: the member is called, not read
  QJSValue end;              // marker: an enumeration is over
  QJSValue wrap;             // (bridge) -> the script's proxy of a host object
  QJSValue bridgeOf;         // (value) -> the bridge of a host object, or undefined
  QJSValue describe;         // (object) -> kind of value, see ValueKind
  QJSValue makeError;        // (number, description, source) -> Error object
  QJSValue makeVBArray;      // (items, bounds) -> VBArray
  QJSValue vbArrayParts;     // (VBArray) -> {items, bounds}, or undefined
  QJSValue valuesOf;         // (iterable) -> array of its values, or undefined
  QJSValue defineGlobal;     // (name, value): a named item
  QJSValue addGlobalMembers; // (bridge): its members become global names
  QJSValue setDynamicCode;   // (allowed): eval and the Function constructors
  QJSValue procedureOf;      // (name) -> the script's global function, or undefined
  QJSValue hostMemberKind;   // (object, name) -> 0 none, 1 property, 2 method
  QJSValue hostCall;         // (object, name, args) -> late-bound read or call
  QJSValue hostSet;          // (object, name, value)
  QJSValue errorInfo;        // (thrown) -> {number, description, name, source, line}
};

// What describe() says about an object coming back from a script that is no
// host object.
enum class ValueKind { Other = 0, VBArray = 2, Bytes = 3, BoxedPrimitive = 4 };

// Runs the bridge script on a fresh engine: installs Enumerator, VBArray
// and ActiveXObject (through host.createObject) and returns the helpers.
BridgeHelpers installBridgeScript(QJSEngine &engine, const QJSValue &host);

} // namespace kordel::script::js
