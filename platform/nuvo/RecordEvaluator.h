#pragma once

#include "core/Variant.h"

#include <memory>

namespace kordel::script {
class ScriptEngine;
}

namespace kordel::nuvo {

class Engine;
class RecordObject;
class RecordScope;

// Record.Evaluate: runs a VBScript expression against a record. Inside it
// the record's fields are names of their own ([path] or a plain name),
// Value("path") and Text("path") read the record, and ActiveUser is the
// signed-in user, whose Record reads the user's own coworker record. A
// field's name hides a built-in function of the same name. One script
// engine serves all records of a database.
class RecordEvaluator {
public:
  explicit RecordEvaluator(Engine &engine);
  ~RecordEvaluator();

  // Raises the script's error when the expression fails.
  Variant evaluate(const std::shared_ptr<RecordObject> &record, const QString &expression);

private:
  Engine &engine_;
  std::unique_ptr<script::ScriptEngine> script_;
  std::shared_ptr<RecordScope> scope_;
};

} // namespace kordel::nuvo
