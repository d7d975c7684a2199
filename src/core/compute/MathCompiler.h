#pragma once

// The math compiler. A definition is kept as text and compiled again for each outing, because
// the channels and constants it names differ per outing: its expression is bound to the outing
// (channel names become "$NNN" or "@NNN", constants become numbers) and the bound text is turned
// into postfix tokens, which are all the evaluator ever sees.

#include <QString>
#include <cstdint>
#include <vector>

struct Workspace;

inline constexpr int kPostfixTokenCount = 129;  // Tokens 0..128
inline constexpr int kMathStackLimit = 128;     // a deeper operator stack stops the compile

// Kinds of a postfix token.
inline constexpr int16_t kTokenChannel = 0;      // logged or derived channel: three digits, its index
inline constexpr int16_t kTokenMathChannel = 1;  // math channel: three digits, its index
inline constexpr int16_t kTokenNumber = 2;       // the digits as written, with "." and a leading "-"
inline constexpr int16_t kTokenOperator = 3;     // an operator or function, as the function table spells it

struct PostfixEntry {
  QString Text;
  int16_t Kind = 0;
};

// The compiled form of one math channel in one outing.
struct PostfixRec {
  std::vector<PostfixEntry> Tokens;  // room for 129; only the first Count are meant
  int16_t Count = 0;
  float Rate = 0;  // samples per ms, worked out by the evaluator
};

// True when `name`, found at `position` (0-based) of `text`, stands alone: neither the character
// before it nor the one behind it is a letter or "_". Digits don't count as part of a name, so a
// channel RPM also matches inside RPM2.
bool IsWholeName(const QString& text, qsizetype position, const QString& name);

// `expression` with every channel name of the outing in `slot` replaced, in table order, by "$"
// and its index as three digits, or "@" and the three digits for a math channel.
QString BindChannelNames(Workspace& ws, int slot, const QString& expression);

// `text` with every constant name of the outing replaced, in table order, by its value, written
// with six decimals.
QString BindConstants(Workspace& ws, int slot, const QString& text);

// Priority of an arithmetic operator, a lower number binding tighter: "^" 0, "*" 1, "/" 2,
// "+" 3, "-" 4; -1 for every other word (functions and the comparison and bit operators).
int OperatorPriority(const QString& word);

// Translates the bound text of definition `i` into the postfix tokens of math channel `i` of the
// outing. A text that cannot be compiled leaves the previous Count standing; an operator stack
// deeper than 128 shows "Math Stack Overflow" and sets Count to 0.
void CompilePostfix(Workspace& ws, int slot, int i);

// Writes the keys of the outing's math channels: math channel i sits at channel index
// LoggedCount + 3 + i with key 1027 + i.
void AssignMathChannelIDs(Workspace& ws, int slot);

// Binds and compiles every math definition for the outing in `slot`. Nothing in here stops the
// loading of an outing: a definition that doesn't fit it just compiles to nothing.
void CompileOutingMath(Workspace& ws, int slot);
