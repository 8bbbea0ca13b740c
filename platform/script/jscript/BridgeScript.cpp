#include "script/jscript/BridgeScript.h"

#include "core/Error.h"

namespace kordel::script::js {

namespace {

const QString kBridgeFileName = QStringLiteral("kordel-bridge");

// The bridge between scripts and host objects, run once per engine.
//
// A host object appears as a Proxy around an arrow function, so that it can
// be called: "obj(a)" reaches the default member. Its traps forward to the
// object's bridge, a QObject with invokable methods (ObjectBridge):
//   get    obj.Name        member(name): a property's value, or the marker
//                          CALLABLE for a method or a property that needs
//                          arguments, for which the trap returns a function
//                          that calls invoke(name, args)
//   set    obj.Name = v    setMember(name, v)
//   apply  obj(a, b)       invoke("", [a, b])
//   has    "Name" in obj   hasMember(name)
// Symbol.iterator walks the object's enumerator, Symbol.toPrimitive and
// toString give its default value, so that for...of, Enumerator and string
// concatenation work as with any collection or value.
const char *const kBridgeSource = R"JS(
(function (global, host) {
  "use strict";

  // The file name of this script as the engine reports it in stacks.
  const bridgeFile = new Error().fileName;

  const CALLABLE = Object.freeze({});
  const END = Object.freeze({});

  // Bookkeeping lives in properties under symbols that only this script
  // knows, not in WeakMaps: the engine searches those one entry at a time.
  const PROXY = Symbol("proxy"); // on a bridge: its proxy
  const PARTS = Symbol("parts"); // on a VBArray: its items and bounds

  function makeError(number, description, source) {
    const error = new Error(description);
    error.number = number;
    error.description = description;
    if (source)
      error.source = source;
    return error;
  }

  // ---- host objects ----

  // Names the engine itself asks of any object; a host object without such
  // a member answers them as a plain object would.
  const engineNames = new Set(["toString", "toLocaleString", "valueOf", "toJSON", "then", "constructor"]);

  function memberFunction(bridge, name) {
    return function (...args) { return bridge.invoke(name, args); };
  }

  function readMember(bridge, name) {
    const value = bridge.member(name);
    return value === CALLABLE ? memberFunction(bridge, name) : value;
  }

  function iterate(bridge) {
    const enumerator = bridge.enumerate();
    return {
      next() {
        const value = enumerator.next();
        return value === END ? { done: true, value: undefined } : { done: false, value: value };
      },
      [Symbol.iterator]() { return this; },
    };
  }

  function symbolMember(bridge, key) {
    if (key === Symbol.iterator)
      return function () { return iterate(bridge); };
    if (key === Symbol.toPrimitive)
      return function () { return bridge.primitive(); };
    if (key === Symbol.toStringTag)
      return bridge.typeName();
    return undefined;
  }

  function engineMember(bridge, name) {
    if (name === "toString" || name === "toLocaleString")
      return function () { return String(bridge.primitive()); };
    if (name === "valueOf")
      return function () { return bridge.primitive(); };
    return undefined;
  }

  // Asking a value for its bridge: the question is a fresh symbol, answered
  // only by the host object it is asked of. A script's own proxy that sees
  // the question learns nothing it could use later or elsewhere.
  let question = null;
  let asked = null;
  function bridgeOf(value) {
    if (typeof value !== "function")
      return undefined;
    const outer = [question, asked];
    question = Symbol();
    asked = value;
    try {
      return value[question];
    } finally {
      [question, asked] = outer;
    }
  }

  function wrap(bridge) {
    const known = bridge[PROXY];
    if (known)
      return known;
    const proxy = new Proxy(() => undefined, {
      get(target, key) {
        if (typeof key === "symbol")
          return key === question && asked === proxy ? bridge : symbolMember(bridge, key);
        if (engineNames.has(key) && !bridge.hasMember(key))
          return engineMember(bridge, key);
        return readMember(bridge, key);
      },
      set(target, key, value) {
        if (typeof key === "symbol")
          return false;
        bridge.setMember(key, value);
        return true;
      },
      has(target, key) { return typeof key === "string" && bridge.hasMember(key); },
      apply(target, self, args) { return bridge.invoke("", args); },
      ownKeys() { return []; },
      getOwnPropertyDescriptor() { return undefined; },
      deleteProperty() { return false; },
      defineProperty() { return false; },
    });
    bridge[PROXY] = proxy;
    return proxy;
  }

  // ---- named items ----

  const namedItems = Object.create(null);
  function defineGlobal(name, value) {
    Object.defineProperty(global, name, { value: value, writable: false, enumerable: false, configurable: true });
    namedItems[name] = true;
  }

  // The members of these objects are global names: the global object's
  // prototype becomes a proxy that answers them, so that names the scripts
  // declare themselves come first.
  const scopeBridges = [];
  function scopeOwner(key) {
    if (typeof key !== "string")
      return undefined;
    return scopeBridges.find((bridge) => bridge.hasMember(key));
  }
  const scope = new Proxy({}, {
    has(target, key) { return scopeOwner(key) !== undefined || Reflect.has(target, key); },
    get(target, key, receiver) {
      const bridge = scopeOwner(key);
      if (bridge)
        return readMember(bridge, key);
      // The engine asks here for every name it cannot resolve and takes the
      // answer as found; typeof ignores the error.
      if (typeof key === "string" && !Reflect.has(target, key))
        throw new ReferenceError(key + " is not defined");
      return Reflect.get(target, key, receiver);
    },
    set(target, key, value, receiver) {
      const bridge = scopeOwner(key);
      if (!bridge)
        return Reflect.set(target, key, value, receiver);
      bridge.setMember(key, value);
      return true;
    },
  });
  function addGlobalMembers(bridge) {
    if (scopeBridges.length === 0)
      Object.setPrototypeOf(global, scope);
    scopeBridges.push(bridge);
  }

  // ---- Enumerator, as JScript has it ----

  function iteratorOf(collection) {
    if (collection === undefined)
      return [][Symbol.iterator]();
    if (collection === null || typeof collection[Symbol.iterator] !== "function")
      throw makeError(451, "Object not a collection");
    return collection[Symbol.iterator]();
  }
  class Enumerator {
    constructor(collection) {
      let iterator = iteratorOf(collection);
      let step = iterator.next();
      this.moveFirst = function () {
        iterator = iteratorOf(collection);
        step = iterator.next();
      };
      this.moveNext = function () {
        if (!step.done)
          step = iterator.next();
      };
      this.atEnd = function () { return Boolean(step.done); };
      this.item = function () { return step.done ? undefined : step.value; };
    }
  }

  // ---- VBArray: arrays of more than one dimension, and JScript's wrapper ----

  // Elements are kept in storage order, the first subscript varying fastest;
  // bounds are [lower, upper] per dimension.
  function partsOf(array) {
    const parts = array !== null && typeof array === "object" ? array[PARTS] : undefined;
    if (!parts)
      throw makeError(13, "VBArray expected");
    return parts;
  }
  function boundsOf(array, dimension) {
    const bounds = partsOf(array).bounds;
    const index = dimension === undefined ? 0 : Number(dimension) - 1;
    if (!(index >= 0 && index < bounds.length))
      throw makeError(9, "Subscript out of range");
    return bounds[index];
  }
  function setParts(array, parts) {
    Object.defineProperty(array, PARTS, { value: parts });
    return array;
  }
  class VBArray {
    constructor(value) {
      if (Array.isArray(value))
        setParts(this, { items: value.slice(), bounds: [[0, value.length - 1]] });
      else
        setParts(this, partsOf(value));
    }
    dimensions() { return partsOf(this).bounds.length; }
    lbound(dimension) { return boundsOf(this, dimension)[0]; }
    ubound(dimension) { return boundsOf(this, dimension)[1]; }
    getItem(...subscripts) {
      const parts = partsOf(this);
      if (subscripts.length !== parts.bounds.length)
        throw makeError(9, "Subscript out of range");
      let offset = 0;
      let stride = 1;
      parts.bounds.forEach(([lower, upper], d) => {
        const subscript = Number(subscripts[d]);
        if (!(subscript >= lower && subscript <= upper))
          throw makeError(9, "Subscript out of range");
        offset += (Math.round(subscript) - lower) * stride;
        stride *= upper - lower + 1;
      });
      return parts.items[offset];
    }
    toArray() { return partsOf(this).items.slice(); }
  }
  function makeVBArray(items, bounds) { return setParts(Object.create(VBArray.prototype), { items: items, bounds: bounds }); }

  // ---- code from strings ----

  // eval and every constructor that compiles text: Function, and the
  // constructors of generator and async functions where the engine has them.
  function codeConstructors() {
    const found = [Function, Object.getPrototypeOf(function* () {}).constructor];
    for (const source of ["return async function () {}", "return async function* () {}"]) {
      try {
        found.push(Object.getPrototypeOf(Function(source)()).constructor);
      } catch (e) {
        // this engine has no such functions, so nothing to block
      }
    }
    return found;
  }
  function refuseCode() { throw makeError(70, "Running code from a string is not allowed here"); }
  const compilers = codeConstructors().map((original) => {
    const blocked = function () { refuseCode(); };
    blocked.prototype = original.prototype;
    return { original: original, blocked: blocked };
  });
  const originalEval = global.eval;
  const blockedEval = function () { refuseCode(); };

  function setDynamicCode(allowed) {
    const hidden = { writable: true, enumerable: false, configurable: true };
    Object.defineProperty(global, "eval", Object.assign({ value: allowed ? originalEval : blockedEval }, hidden));
    compilers.forEach(({ original, blocked }, index) => {
      const constructor = allowed ? original : blocked;
      Object.defineProperty(original.prototype, "constructor", Object.assign({ value: constructor }, hidden));
      if (index === 0)
        Object.defineProperty(global, "Function", Object.assign({ value: constructor }, hidden));
    });
  }

  // ---- the global names JScript offers ----

  function ActiveXObject(progId) { return host.createObject(String(progId)); }
  for (const [name, value] of [["Enumerator", Enumerator], ["VBArray", VBArray], ["ActiveXObject", ActiveXObject]])
    Object.defineProperty(global, name, { value: value, writable: true, enumerable: false, configurable: true });

  // ---- the host's side: procedures, late-bound access, errors ----

  // The engine's own global functions, and those that stand in for eval and
  // Function; a global function is a procedure when a script made it. The
  // lookup runs no script code: it reads data properties of the global
  // object only.
  const engineFunctions = new Set(Object.getOwnPropertyNames(global).map((name) => global[name]));
  engineFunctions.add(blockedEval);
  compilers.forEach(({ blocked }) => engineFunctions.add(blocked));
  function ownFunction(name) {
    const property = Object.getOwnPropertyDescriptor(global, name);
    if (!property || typeof property.value !== "function" || namedItems[name])
      return undefined;
    return engineFunctions.has(property.value) ? undefined : property.value;
  }
  function procedureOf(name) {
    const exact = ownFunction(name);
    if (exact)
      return exact;
    const lower = name.toLowerCase();
    const matches = Object.getOwnPropertyNames(global).filter((n) => n.toLowerCase() === lower && ownFunction(n));
    return matches.length === 1 ? ownFunction(matches[0]) : undefined;
  }

  function keyOf(object, name) {
    if (name in object)
      return name;
    const lower = name.toLowerCase();
    const matches = Object.getOwnPropertyNames(object).filter((n) => n.toLowerCase() === lower);
    return matches.length === 1 ? matches[0] : undefined;
  }
  function noMember(name) {
    return makeError(438, "Object doesn't support this property or method: '" + name + "'");
  }
  // 0: no such member, 1: a property, 2: a method.
  function hostMemberKind(object, name) {
    const key = keyOf(object, name);
    if (key === undefined)
      return 0;
    const value = object[key];
    return typeof value === "function" && bridgeOf(value) === undefined ? 2 : 1;
  }
  function hostCall(object, name, args) {
    if (name === "") {
      if (typeof object !== "function")
        throw noMember(name);
      return object(...args);
    }
    const key = keyOf(object, name);
    if (key === undefined)
      throw noMember(name);
    const value = object[key];
    if (bridgeOf(value) !== undefined)
      return args.length === 0 ? value : value(...args);
    if (typeof value === "function")
      return Reflect.apply(value, object, args);
    if (args.length === 0)
      return value;
    if (Array.isArray(value) && args.length === 1) {
      const index = Number(args[0]);
      if (!(index >= 0 && index < value.length))
        throw makeError(9, "Subscript out of range");
      return value[Math.round(index)];
    }
    throw makeError(13, "Type mismatch: '" + name + "'");
  }
  function hostSet(object, name, value) {
    const key = keyOf(object, name);
    object[key === undefined ? name : key] = value;
  }

  // The first frame of an error's stack outside this bridge.
  function lineOf(error) {
    const frames = typeof error.stack === "string" ? error.stack.split("\n") : [];
    for (const frame of frames) {
      const place = frame.slice(frame.indexOf("@") + 1);
      const colon = place.lastIndexOf(":");
      if (colon < 0 || place.slice(0, colon) === bridgeFile)
        continue;
      const line = Number(place.slice(colon + 1));
      if (line > 0)
        return line;
    }
    return typeof error.lineNumber === "number" ? error.lineNumber : 0;
  }
  // What the host needs of a value thrown and not caught.
  function errorInfo(thrown) {
    const info = { number: 0, description: "", name: "", source: "", line: 0 };
    if (thrown !== null && typeof thrown === "object" && typeof thrown.number === "number") {
      info.number = thrown.number;
      info.description = String(typeof thrown.description === "string" ? thrown.description : thrown.message);
      info.source = typeof thrown.source === "string" ? thrown.source : "";
    } else if (thrown instanceof Error) {
      info.description = String(thrown.message);
      info.name = String(thrown.name);
    } else {
      info.description = String(thrown);
    }
    if (thrown instanceof Error)
      info.line = lineOf(thrown);
    return info;
  }

  // What kind of value a script object is, for the conversion to the host
  // (host objects are found with bridgeOf first).
  function describe(value) {
    if (value !== null && typeof value === "object" && value[PARTS] !== undefined)
      return 2;
    if (value instanceof ArrayBuffer)
      return 3;
    if (value instanceof Number || value instanceof String || value instanceof Boolean)
      return 4;
    return 0;
  }

  return {
    callable: CALLABLE,
    end: END,
    wrap: wrap,
    bridgeOf: bridgeOf,
    describe: describe,
    makeError: makeError,
    makeVBArray: makeVBArray,
    vbArrayParts: (array) => array[PARTS],
    valuesOf: (value) => (value != null && typeof value[Symbol.iterator] === "function" ? Array.from(value) : undefined),
    defineGlobal: defineGlobal,
    addGlobalMembers: addGlobalMembers,
    setDynamicCode: setDynamicCode,
    procedureOf: procedureOf,
    hostMemberKind: hostMemberKind,
    hostCall: hostCall,
    hostSet: hostSet,
    errorInfo: errorInfo,
  };
})
)JS";

} // namespace

BridgeHelpers installBridgeScript(QJSEngine &engine, const QJSValue &host) {
  const QJSValue factory = engine.evaluate(QString::fromUtf8(kBridgeSource), kBridgeFileName);
  const QJSValue made = factory.isCallable() ? factory.call({engine.globalObject(), host}) : factory;
  if (made.isError() || !made.isObject())
    raiseError(ErrorNumber::InvalidCall, QStringLiteral("JScript"),
               QStringLiteral("The script bridge failed to start: %1").arg(made.toString()));
  BridgeHelpers helpers;
  helpers.callable = made.property(QStringLiteral("callable"));
  helpers.end = made.property(QStringLiteral("end"));
  helpers.wrap = made.property(QStringLiteral("wrap"));
  helpers.bridgeOf = made.property(QStringLiteral("bridgeOf"));
  helpers.describe = made.property(QStringLiteral("describe"));
  helpers.makeError = made.property(QStringLiteral("makeError"));
  helpers.makeVBArray = made.property(QStringLiteral("makeVBArray"));
  helpers.vbArrayParts = made.property(QStringLiteral("vbArrayParts"));
  helpers.valuesOf = made.property(QStringLiteral("valuesOf"));
  helpers.defineGlobal = made.property(QStringLiteral("defineGlobal"));
  helpers.addGlobalMembers = made.property(QStringLiteral("addGlobalMembers"));
  helpers.setDynamicCode = made.property(QStringLiteral("setDynamicCode"));
  helpers.procedureOf = made.property(QStringLiteral("procedureOf"));
  helpers.hostMemberKind = made.property(QStringLiteral("hostMemberKind"));
  helpers.hostCall = made.property(QStringLiteral("hostCall"));
  helpers.hostSet = made.property(QStringLiteral("hostSet"));
  helpers.errorInfo = made.property(QStringLiteral("errorInfo"));
  return helpers;
}

} // namespace kordel::script::js
