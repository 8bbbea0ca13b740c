#pragma once

#include "core/Variant.h"

#include <QString>

#include <cstdint>

namespace kordel::script::vb {

// The kinds of token. Reserved words have their own kinds; words that are
// keywords only in some places (Explicit, Step, Preserve, Get, Let,
// Property, Default, Resume, Each, In, GoTo, Error) come as identifiers and
// the parser reads them by their text.
enum class Tok : std::uint8_t {
  End,     // end of the text
  Newline, // a line break
  Colon,   // ':' between statements
  Identifier,
  Number,    // value holds an Integer, Long or Double
  String,    // value holds the text
  DateValue, // value holds a Date
  LParen,
  RParen,
  Comma,
  Dot,
  Plus,
  Minus,
  Star,
  Slash,
  Backslash,
  Caret,
  Ampersand,
  Equal,
  NotEqual,
  Less,
  Greater,
  LessEqual,
  GreaterEqual,
  // reserved words
  KwAnd,
  KwByRef,
  KwByVal,
  KwCall,
  KwCase,
  KwClass,
  KwConst,
  KwDim,
  KwDo,
  KwElse,
  KwElseIf,
  KwEmpty,
  KwEnd,
  KwEqv,
  KwErase,
  KwExit,
  KwFalse,
  KwFor,
  KwFunction,
  KwIf,
  KwImp,
  KwIs,
  KwLoop,
  KwMe,
  KwMod,
  KwNew,
  KwNext,
  KwNot,
  KwNothing,
  KwNull,
  KwOn,
  KwOption,
  KwOr,
  KwPrivate,
  KwPublic,
  KwReDim,
  KwSelect,
  KwSet,
  KwStop,
  KwSub,
  KwThen,
  KwTo,
  KwTrue,
  KwUntil,
  KwWend,
  KwWhile,
  KwWith,
  KwXor,
};

struct Token {
  Tok kind = Tok::End;
  int line = 1;
  int column = 1;
  QString text;             // the identifier or the word as written
  Variant value;            // literals
  bool spaceBefore = false; // blanks precede it: "a .b" is a With member, "a.b" a member of a
};

} // namespace kordel::script::vb
